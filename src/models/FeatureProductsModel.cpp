#include "models/FeatureProductsModel.h"

#include "models/CheckMark.h"

#include <QColor>

namespace ProductEditor {

namespace {

enum { CheckColumn, IdColumn };

} // namespace

FeatureProductsModel::FeatureProductsModel(VantixJsonData &data, QObject *parent)
    : QIdentityProxyModel(parent), m_data(data)
{
}

FeatureProductsModel::~FeatureProductsModel() = default;

void FeatureProductsModel::UpdateFeature(const QString &id)
{
    m_currentFeature = id;
}

void FeatureProductsModel::Update()
{
    // One past the last row and column, as the products tab has always sent it.
    emit dataChanged(index(0, 0), createIndex(rowCount(), columnCount()));
}

QVariant FeatureProductsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || m_currentFeature.isEmpty())
        return QVariant();
    const QModelIndex source = mapToSource(index);
    if (!source.isValid())
        return QVariant();
    const QString productId =
        source.sibling(source.row(), IdColumn).data(Qt::DisplayRole).toString();
    const QMap<QString, VantixFeatureData> &features = m_data.GetFeatures();
    const auto feature = features.constFind(m_currentFeature);
    const bool member = feature != features.constEnd() && feature->productIds.contains(productId);
    if (index.column() == CheckColumn && (role == Qt::DecorationRole || role == Qt::UserRole))
        return CheckMarkData(member, role);
    if (index.column() == IdColumn && role == Qt::ForegroundRole)
        return QColor(member ? Qt::black : Qt::gray);
    return QIdentityProxyModel::data(index, role);
}

bool FeatureProductsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    if (index.column() == CheckColumn) {
        const QModelIndex source = mapToSource(index);
        if (!source.isValid())
            return false;
        const QString productId =
            source.sibling(source.row(), IdColumn).data(Qt::DisplayRole).toString();
        QSet<QString> &products = m_data.GetFeatures()[m_currentFeature].productIds;
        if (value.toBool())
            products.insert(productId);
        else
            products.remove(productId);
    }
    emit dataChanged(index, index);
    return true;
}

} // namespace ProductEditor
