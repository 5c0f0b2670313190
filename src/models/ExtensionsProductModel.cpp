#include "models/ExtensionsProductModel.h"

namespace ProductEditor {

ExtensionsProductModel::ExtensionsProductModel(VantixJsonData &data, QObject *parent)
    : ExtensionsBaseModel(data, parent)
{
}

ExtensionsProductModel::~ExtensionsProductModel() = default;

QString ExtensionsProductModel::RowName(const QModelIndex &index) const
{
    const QVector<ProductData> &products = Data().GetProducts().products;
    if (index.row() < 0 || index.row() >= products.size())
        return QString();
    return products.at(index.row()).id;
}

const ExtensionAccess *ExtensionsProductModel::RowAccess(const QModelIndex &index) const
{
    const QVector<ProductData> &products = Data().GetProducts().products;
    if (index.row() < 0 || index.row() >= products.size())
        return nullptr;
    return &products.at(index.row()).extensions;
}

int ExtensionsProductModel::ItemCount() const
{
    return Data().GetProducts().products.size();
}

QString ExtensionsProductModel::ItemTitle() const
{
    return QStringLiteral("Product");
}

ExtensionAccess *ExtensionsProductModel::EditRowAccess(const QModelIndex &index)
{
    QVector<ProductData> &products = Data().GetProducts().products;
    if (index.row() < 0 || index.row() >= products.size())
        return nullptr;
    return &products[index.row()].extensions;
}

} // namespace ProductEditor
