#include "models/ProductsModel.h"

namespace ProductEditor {

ProductsModel::ProductsModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
    connect(&m_data, &VantixJsonData::featuresDataAboutToBeReset, this,
            &ProductsModel::beginResetModel);
    connect(&m_data, &VantixJsonData::featuresDataReseted, this, &ProductsModel::endResetModel);
    connect(&m_data, &VantixJsonData::productsDataAboutToBeUpdate, this,
            &ProductsModel::beginResetModel);
    connect(&m_data, &VantixJsonData::productsDataUpdated, this, &ProductsModel::endResetModel);
}

ProductsModel::~ProductsModel() = default;

int ProductsModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return m_data.GetProducts().products.size();
}

int ProductsModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant ProductsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const QVector<ProductData> &products = m_data.GetProducts().products;
    if (index.row() < 0 || index.row() >= products.size())
        return QVariant();
    const ProductData &product = products.at(index.row());
    switch (index.column()) {
    case IdColumn:
        return role == Qt::DisplayRole ? QVariant(product.id) : QVariant();
    case SuffixColumn:
        return role == Qt::DisplayRole || role == Qt::EditRole ? QVariant(product.profile_suffix)
                                                               : QVariant();
    case BaseColumn:
        return role == Qt::DisplayRole || role == Qt::EditRole ? QVariant(product.base)
                                                               : QVariant();
    default:
        return QVariant();
    }
}

QVariant ProductsModel::headerData(int section, Qt::Orientation, int role) const
{
    // Whatever the orientation, as the products tab has always shown it.
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case IdColumn:
        return QStringLiteral("Product");
    case SuffixColumn:
        return QStringLiteral("Suffix");
    case BaseColumn:
        return QStringLiteral("Base lic");
    default:
        return QVariant();
    }
}

Qt::ItemFlags ProductsModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags result = QAbstractTableModel::flags(index);
    if (index.isValid() && (index.column() == SuffixColumn || index.column() == BaseColumn))
        result |= Qt::ItemIsEditable;
    return result;
}

bool ProductsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    QVector<ProductData> &products = m_data.GetProducts().products;
    if (index.row() < 0 || index.row() >= products.size())
        return false;
    const QString id = products.at(index.row()).id;
    switch (index.column()) {
    case IdColumn:
        products[index.row()].id = value.toString();
        break;
    case SuffixColumn:
        m_data.SetSuffixToProduct(id, value.toString());
        break;
    case BaseColumn:
        m_data.SetBaseLicenseToProduct(id, value.toString());
        break;
    default:
        break;
    }
    emit dataChanged(index, index);
    return true;
}

bool ProductsModel::removeRows(int row, int, const QModelIndex &)
{
    if (row < 0 || row >= rowCount())
        return false;
    beginRemoveRows(QModelIndex(), row, row);
    m_data.RemoveProduct(index(row, IdColumn).data(Qt::DisplayRole).toString());
    endRemoveRows();
    return true;
}

} // namespace ProductEditor
