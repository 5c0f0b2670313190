#include "models/ProductLayoutsModel.h"

#include "models/CheckMark.h"

#include <QColor>

#include <utility>

namespace ProductEditor {

namespace {


bool IsCheckRole(int role)
{
    return role == Qt::DecorationRole || role == Qt::UserRole;
}

} // namespace

ProductLayoutsModel::ProductLayoutsModel(VantixJsonData &data, QObject *parent)
    : QIdentityProxyModel(parent), m_data(data)
{
}

ProductLayoutsModel::~ProductLayoutsModel() = default;

QString ProductLayoutsModel::_LayoutName(const QModelIndex &index) const
{
    const QModelIndex source = mapToSource(index);
    return source.sibling(source.row(), NameColumn).data(Qt::DisplayRole).toString();
}

QVariant ProductLayoutsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || m_currentFeature.isEmpty())
        return QVariant();
    const QString name = _LayoutName(index);
    switch (index.column()) {
    case FeatureColumn: {
        // Looked up with insertion: an unknown current id gains a default record.
        QMap<QString, VantixFeatureData> &features = m_data.GetFeatures();
        auto found = std::as_const(features).constFind(m_currentFeature);
        if (found == features.constEnd())
            found = features.insert(m_currentFeature, VantixFeatureData());
        const VantixFeatureData &feature = found.value();
        if (IsCheckRole(role))
            return CheckMarkData(feature.layoutNames.contains(name), role);
        break;
    }
    case ProductColumn:
        if (IsCheckRole(role)) {
            const ProductData *product = std::as_const(m_data.GetProducts()).Find(m_currentProduct);
            return product ? CheckMarkData(product->modes.contains(name), role) : QVariant();
        }
        break;
    case NameColumn:
        if (role == Qt::ForegroundRole) {
            const ProductData *product = std::as_const(m_data.GetProducts()).Find(m_currentProduct);
            if (!product)
                return QVariant();
            return QColor(product->modes.contains(name) ? Qt::black : Qt::gray);
        }
        break;
    default:
        break;
    }
    return QIdentityProxyModel::data(index, role);
}

bool ProductLayoutsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() == NameColumn || role != Qt::EditRole
        || !mapToSource(index).isValid())
        return false;
    const QString name = _LayoutName(index);
    QSet<QString> *set = nullptr;
    if (index.column() == FeatureColumn) {
        set = &m_data.GetFeatures()[m_currentFeature].layoutNames;
    } else if (index.column() == ProductColumn) {
        ProductData *product = m_data.GetProducts().Find(m_currentProduct);
        if (!product)
            return false;
        set = &product->modes;
    }
    SetCheckMark(set, name, value.toBool());
    emit dataChanged(index, index);
    return true;
}

void ProductLayoutsModel::UpdateData(const QString &product)
{
    m_currentProduct = product;
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void ProductLayoutsModel::UpdateFeature(const QString &feature)
{
    m_currentFeature = feature;
}

} // namespace ProductEditor
