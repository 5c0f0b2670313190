#pragma once

#include "store/FeatureRecordsBuilder.h"
#include "store/LayoutParts.h"
#include "store/VantixJsonData.h"

#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

namespace ProductEditor {

// What the products document holds, read in document order and not yet applied to a
// store: the store applies it in its own order (extensions, then their coverage,
// then features and products), whatever order the document's keys came in.
struct ProductsParts
{
    struct Extension
    {
        QString id;
        ExtensionInfo info; // without licenses
    };
    struct Coverage
    {
        QString id;
        QVector<QString> licenses; // as listed; non-strings are ""
    };

    // The owner number of a product id for the feature builder; products may repeat an id.
    int ownerOf(const QString &productId)
    {
        const auto found = owners.constFind(productId);
        if (found != owners.cend())
            return found.value();
        productNames.append(productId);
        owners.insert(productId, productNames.size() - 1);
        return productNames.size() - 1;
    }

    QVector<Extension> extensions;
    QVector<Coverage> exportCoverage;
    QVector<Coverage> importCoverage;
    QVector<ProductData> products;
    QVector<QString> productNames;
    QHash<QString, int> owners;
    FeatureRecordsBuilder features{0};
};

// Applies the parts to a store's records, which the caller has emptied but for the
// extensions: an extension entry overwrites a record of its id, as a reload does.
void ApplyProductsParts(ProductsParts &&parts, LayoutParts &&layoutParts, QMap<QString, VantixFeatureData> &features,
                        VantixProducts &products, QMap<QString, LayoutData> &layouts,
                        QMap<QString, ExtensionInfo> &extensions);

} // namespace ProductEditor
