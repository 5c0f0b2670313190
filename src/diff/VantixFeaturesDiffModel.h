#pragma once

#include "json/QJsonModel.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

namespace ProductEditor {

class QJsonDiffTreeItem;
class QJsonTreeItem;

// The differences of two JSON objects as a tree with a column per side; the user ticks
// the side each difference takes, and ApplyPatch writes the ticked sides into an object.
class PRODUCT_EDITOR_EXPORT VantixFeaturesDiffModel : public QJsonModel
{
    Q_OBJECT

public:
    explicit VantixFeaturesDiffModel(QObject *parent = nullptr);
    ~VantixFeaturesDiffModel() override;

    bool Regenerate(const QJsonObject &left, const QJsonObject &right);
    void ApplyPatch(QJsonObject &target);
    // The diff tree; null before the first Regenerate.
    const QJsonDiffTreeItem *GetRoot() const;

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    void setEditableMode(bool editableMode);
    void setHeaders(const QStringList &headers);

private:
    bool _BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonTreeItem *node);
    QJsonValue _GenPatch(QJsonTreeItem *node, QJsonValue value) const;
};

} // namespace ProductEditor
