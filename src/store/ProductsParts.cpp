#include "store/ProductsParts.h"

#include "store/DefinitionKeys.h"
#include "store/ProductsTreeReader.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

#include <utility>

namespace ProductEditor {

using namespace Keys;

// Extensions first, then their coverage, then products and layouts, and the features
// last, once every list that names them is in.
void ApplyProductsParts(ProductsParts &&parts, const QMap<QString, QJsonObject> &layoutsOriginal,
                        QMap<QString, VantixFeatureData> &features, VantixProducts &products,
                        QMap<QString, LayoutData> &layouts, QMap<QString, ExtensionInfo> &extensions)
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

    QVector<QString> layoutNames;
    for (auto it = layoutsOriginal.cbegin(); it != layoutsOriginal.cend(); ++it) {
        const QCborMap layout = QCborMap::fromJsonObject(it.value());
        layouts.insert(layouts.cend(), it.key(), LayoutData{ReadExtensionAccess(layout.value(kExtensions).toMap())});
        parts.features.addLayoutMembers(layout.value(kFeatures).toArray(), layoutNames.size());
        layoutNames.append(it.key());
    }
    parts.features.build(features, parts.productNames, layoutNames);
}

} // namespace ProductEditor
