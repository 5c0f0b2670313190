#include "store/VantixJsonData.h"

#include "store/DefinitionKeys.h"

namespace ProductEditor {

using namespace Keys;

namespace {

void RemoveFromAccess(ExtensionAccess &access, const QString &id)
{
    access.export_.remove(id);
    access.export_as_project.remove(id);
    access.import.remove(id);
    access.import_as_project.remove(id);
    access.export_as_scene.remove(id);
    access.open.remove(id);
}

} // namespace

ProductData *VantixProducts::Find(const QString &id)
{
    for (ProductData &product : products) {
        if (product.id == id)
            return &product;
    }
    return nullptr;
}

const ProductData *VantixProducts::Find(const QString &id) const
{
    for (const ProductData &product : products) {
        if (product.id == id)
            return &product;
    }
    return nullptr;
}

ProductData *VantixJsonData::_FindProduct(const QString &id)
{
    return products.Find(id);
}

bool VantixJsonData::DuplicateFeatureFrom(const QString &sourceId, const QString &newId)
{
    const auto source = features.constFind(sourceId);
    if (source == features.cend() || features.contains(newId))
        return false;
    emit featuresDataAboutToBeReset(QPrivateSignal());
    const VantixFeatureData copy = source.value();
    features.insert(newId, copy);
    emit featuresDataReseted(QPrivateSignal());
    return true;
}

bool VantixJsonData::DuplicateProductFrom(const QString &sourceId, const QString &newId)
{
    if (_FindProduct(newId))
        return false;
    const ProductData *source = _FindProduct(sourceId);
    if (!source)
        return false;
    emit productsDataAboutToBeUpdate(QPrivateSignal());
    for (VantixFeatureData &feature : features) {
        if (feature.productIds.contains(sourceId))
            feature.productIds.insert(newId);
    }
    ProductData copy = *source;
    copy.id = newId;
    products.products.append(std::move(copy));
    emit productsDataUpdated(QPrivateSignal());
    return true;
}

void VantixJsonData::RemoveExtension(const QString &id)
{
    extensions.remove(id);
    for (ProductData &product : products.products)
        RemoveFromAccess(product.extensions, id);
    for (LayoutData &layout : layouts)
        RemoveFromAccess(layout, id);
}

void VantixJsonData::RemoveProduct(const QString &id)
{
    const ProductData *product = _FindProduct(id);
    if (!product)
        return;
    for (VantixFeatureData &feature : features)
        feature.productIds.remove(id);
    products.products.remove(int(product - products.products.constData()));
}

void VantixJsonData::SetBaseLicenseToProduct(const QString &productId, const QString &license)
{
    if (ProductData *product = _FindProduct(productId))
        product->base = license;
}

void VantixJsonData::SetSuffixToProduct(const QString &productId, const QString &suffix)
{
    if (ProductData *product = _FindProduct(productId))
        product->profile_suffix = suffix;
}

bool VantixJsonData::IsLicenseBasic(const QString &license) const
{
    for (const ProductData &product : products.products) {
        if (product.base == license)
            return true;
    }
    return false;
}

} // namespace ProductEditor
