#pragma once

#include "json/QJsonModel.h"

#include <QJsonObject>

namespace ProductEditor {

// The result tab's tree over a generated result object.
class PRODUCT_EDITOR_EXPORT VantixResultModel : public QJsonModel
{
    Q_OBJECT

public:
    explicit VantixResultModel(QObject *parent = nullptr);

    void SetJson(const QJsonObject &object);
    QJsonObject GetJson() const;
};

} // namespace ProductEditor
