#include "store/LayoutParts.h"

#include "store/DefinitionKeys.h"
#include "store/ProductsTreeReader.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

namespace ProductEditor {

using namespace Keys;

LayoutParts ReadLayoutParts(const QMap<QString, QJsonObject> &layoutsOriginal)
{
    LayoutParts parts;
    parts.featureIds.reserve(size_t(layoutsOriginal.size()));
    for (auto it = layoutsOriginal.cbegin(); it != layoutsOriginal.cend(); ++it) {
        const QCborMap layout = QCborMap::fromJsonObject(it.value());
        parts.layouts.insert(parts.layouts.cend(), it.key(), LayoutData{ReadExtensionAccess(layout.value(kExtensions).toMap())});
        parts.names.append(it.key());
        // Non-string elements read as the empty name, so they still become members.
        std::vector<QString> ids;
        const QCborArray features = layout.value(kFeatures).toArray();
        ids.reserve(size_t(features.size()));
        for (const QCborValue &id : features)
            ids.push_back(id.toString());
        parts.featureIds.push_back(FeatureRecordsBuilder::Prepare(std::move(ids)));
    }
    return parts;
}

} // namespace ProductEditor
