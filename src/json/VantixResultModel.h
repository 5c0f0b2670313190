#pragma once

#include "json/QJsonModel.h"

#include <QJsonObject>

namespace ProductEditor {

// The result tab's tree over a generated result object. The tree is built level by
// level as the view asks for rows, so showing a large result costs what is shown.
class PRODUCT_EDITOR_EXPORT VantixResultModel : public QJsonModel
{
    Q_OBJECT

public:
    explicit VantixResultModel(QObject *parent = nullptr);

    void SetJson(const QJsonObject &object);
    QJsonObject GetJson() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
};

} // namespace ProductEditor
