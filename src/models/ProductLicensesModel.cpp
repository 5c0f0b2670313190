#include "models/ProductLicensesModel.h"

#include "models/CheckMark.h"

#include <QColor>

#include <utility>

namespace ProductEditor {

ProductLicensesModel::ProductLicensesModel(VantixJsonData &data, QObject *parent)
    : QIdentityProxyModel(parent), m_data(data)
{
}

ProductLicensesModel::~ProductLicensesModel() = default;

QVariant ProductLicensesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || m_currentFeature.isEmpty() || m_currentProduct.isEmpty())
        return QVariant();
    const QModelIndex source = mapToSource(index);
    const QString name = source.sibling(source.row(), NameColumn).data(Qt::DisplayRole).toString();
    const ProductData *product = std::as_const(m_data.GetProducts()).Find(m_currentProduct);
    if (!product)
        return QVariant();
    const auto entry = product->specificLicenses.constFind(m_currentFeature);
    const bool member = entry != product->specificLicenses.constEnd() && entry->contains(name);

    if (index.column() == CheckColumn && (role == Qt::DecorationRole || role == Qt::UserRole))
        return CheckMarkData(member, role);
    if (index.column() != CheckColumn && role == Qt::ForegroundRole)
        return QColor(member ? Qt::black : Qt::gray);
    return QIdentityProxyModel::data(index, role);
}

bool ProductLicensesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != CheckColumn || role != Qt::EditRole)
        return false;
    const QModelIndex source = mapToSource(index);
    if (!source.isValid())
        return false;
    ProductData *product = m_data.GetProducts().Find(m_currentProduct);
    if (!product)
        return false;
    const QString name = source.sibling(source.row(), NameColumn).data(Qt::DisplayRole).toString();
    QMap<QString, QSet<QString>> &specific = product->specificLicenses;
    if (value.toBool()) {
        specific[m_currentFeature].insert(name);
    } else {
        const auto entry = specific.find(m_currentFeature);
        if (entry != specific.end()) {
            entry->remove(name);
            // No empty entry is left behind.
            if (entry->isEmpty())
                specific.erase(entry);
        }
    }
    emit dataChanged(index, index);
    return true;
}

void ProductLicensesModel::UpdateData(const QString &product)
{
    m_currentProduct = product;
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void ProductLicensesModel::UpdateFeature(const QString &feature)
{
    m_currentFeature = feature;
}

} // namespace ProductEditor
