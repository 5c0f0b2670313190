#include "store/ProductsParts.h"

#include <utility>

namespace ProductEditor {

// Extensions first, then their coverage, then products and layouts, and the features
// last, once every list that names them is in.
void ApplyProductsParts(ProductsParts &&parts, LayoutParts &&layoutParts, QMap<QString, VantixFeatureData> &features,
                        VantixProducts &products, QMap<QString, LayoutData> &layouts,
                        QMap<QString, ExtensionInfo> &extensions)
{
    for (const ProductsParts::Extension &entry : std::as_const(parts.extensions))
        extensions[entry.id] = entry.info;
    const auto cover = [&extensions](const QVector<ProductsParts::Coverage> &entries, QSet<QString> ExtensionInfo::*set) {
        for (const ProductsParts::Coverage &entry : entries) {
            QSet<QString> &licenses = extensions[entry.id].*set;
            for (const QString &license : entry.licenses)
                licenses.insert(license);
        }
    };
    cover(parts.exportCoverage, &ExtensionInfo::exportLicenses);
    cover(parts.importCoverage, &ExtensionInfo::importLicenses);
    products.products = std::move(parts.products);
    layouts = std::move(layoutParts.layouts);
    for (size_t owner = 0; owner < layoutParts.featureIds.size(); ++owner)
        parts.features.addLayoutMembers(layoutParts.featureIds[owner], int(owner));
    parts.features.build(features, parts.productNames, layoutParts.names);
}

} // namespace ProductEditor
