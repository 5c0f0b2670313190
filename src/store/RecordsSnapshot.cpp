#include "store/RecordsSnapshot.h"

namespace ProductEditor {

// Found by argument-dependent lookup from the containers' own comparisons.
static bool operator==(const ExtensionAccess &a, const ExtensionAccess &b)
{
    return a.export_ == b.export_ && a.export_as_project == b.export_as_project && a.import == b.import
           && a.import_as_project == b.import_as_project && a.export_as_scene == b.export_as_scene
           && a.open == b.open;
}

static bool operator==(const LayoutData &a, const LayoutData &b)
{
    return static_cast<const ExtensionAccess &>(a) == static_cast<const ExtensionAccess &>(b);
}

static bool operator==(const VantixFeatureData &a, const VantixFeatureData &b)
{
    return a.statustip == b.statustip && a.tooltip == b.tooltip && a.title == b.title && a.visual == b.visual
           && a.emergency == b.emergency && a.productIds == b.productIds && a.layoutNames == b.layoutNames;
}

static bool operator==(const ExtensionInfo &a, const ExtensionInfo &b)
{
    return a.slices_support == b.slices_support && a.cad_support == b.cad_support && a.load_as_part == b.load_as_part
           && a.multiple_parts_support == b.multiple_parts_support && a.title == b.title && a.ext == b.ext
           && a.importLicenses == b.importLicenses && a.exportLicenses == b.exportLicenses;
}

static bool operator==(const ProductData &a, const ProductData &b)
{
    return a.id == b.id && a.base == b.base && a.profile_suffix == b.profile_suffix && a.extensions == b.extensions
           && a.specificLicenses == b.specificLicenses && a.modes == b.modes;
}

RecordsSnapshot RecordsSnapshot::Take(VantixJsonData &data)
{
    RecordsSnapshot snapshot;
    snapshot.features = data.GetFeatures();
    snapshot.products = data.GetProducts();
    snapshot.layouts = data.GetLayouts();
    snapshot.licenses = data.GetLicenses();
    snapshot.extensions = data.GetExtensions();
    snapshot.productsOriginal = data.GetProductsOriginalJson();
    snapshot.layoutsOriginal = data.GetLayoutsOriginalJsons();
    return snapshot;
}

void RecordsSnapshot::Restore(VantixJsonData &data) const
{
    data.GetFeatures() = features;
    data.GetProducts() = products;
    data.GetLayouts() = layouts;
    data.GetLicenses() = licenses;
    data.GetExtensions() = extensions;
    data.GetProductsOriginalJson() = productsOriginal;
    data.GetLayoutsOriginalJsons() = layoutsOriginal;
}

bool RecordsSnapshot::operator==(const RecordsSnapshot &other) const
{
    return features == other.features && products.products == other.products.products && layouts == other.layouts
           && licenses == other.licenses && extensions == other.extensions
           && productsOriginal == other.productsOriginal && layoutsOriginal == other.layoutsOriginal;
}

} // namespace ProductEditor
