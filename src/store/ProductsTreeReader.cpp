#include "store/ProductsTreeReader.h"

#include "store/DefinitionKeys.h"

#include <QCborArray>
#include <QCborValue>

namespace ProductEditor {

using namespace Keys;

namespace {

bool ReadBool(const QCborMap &object, const QString &key, bool fallback)
{
    const QCborValue value = object.value(key);
    return value.isBool() ? value.toBool() : fallback;
}

void Add(QSet<QString> &names, const QString &name) { names.insert(name); }
void Add(QVector<QString> &names, const QString &name) { names.append(name); }

// Non-string elements read as the empty name, so they still become members.
template<typename Names>
void AddNames(const QCborValue &array, Names &into)
{
    const QCborArray names = array.toArray();
    for (const QCborValue &name : names)
        Add(into, name.toString());
}

void ReadCoverage(const QCborArray &entries, QVector<ProductsParts::Coverage> &into)
{
    for (const QCborValue &entryValue : entries) {
        const QCborMap entry = entryValue.toMap();
        into.append({entry.value(kId).toString(), {}});
        AddNames(entry.value(kLic), into.last().licenses);
    }
}

void ReadExtensions(const QCborMap &section, ProductsParts &parts)
{
    const QCborArray entries = section.value(kExtension).toArray();
    for (const QCborValue &entryValue : entries) {
        const QCborMap entry = entryValue.toMap();
        ExtensionInfo info;
        info.cad_support = ReadBool(entry, kCadSupport, false);
        info.load_as_part = ReadBool(entry, kLoadAsPart, false);
        info.ext = entry.value(kExt).toString();
        info.slices_support = ReadBool(entry, kSlicesSupport, false);
        info.multiple_parts_support = ReadBool(entry, kMultiplePartsSupport, false);
        info.title = entry.value(kTitle).toString();
        parts.extensions.append({entry.value(kId).toString(), info});
    }
    const QCborMap coverage = section.value(kCoverage).toMap();
    ReadCoverage(coverage.value(kExport).toArray(), parts.exportCoverage);
    ReadCoverage(coverage.value(kImport).toArray(), parts.importCoverage);
}

void ReadFeatures(const QCborArray &entries, ProductsParts &parts)
{
    parts.features = FeatureRecordsBuilder(int(entries.size()));
    for (const QCborValue &entryValue : entries) {
        const QCborMap entry = entryValue.toMap();
        VantixFeatureData feature;
        feature.statustip = entry.value(kStatustip).toString();
        feature.title = entry.value(kTitle).toString();
        feature.tooltip = entry.value(kTooltip).toString();
        feature.visual = ReadBool(entry, kVisual, true);
        feature.emergency = ReadBool(entry, kEmergency, false);
        parts.features.addEntry(entry.value(kId).toString(), std::move(feature));
    }
}

void ReadProducts(const QCborArray &entries, ProductsParts &parts)
{
    parts.products.reserve(int(entries.size()));
    for (const QCborValue &entryValue : entries) {
        const QCborMap entry = entryValue.toMap();
        ProductData product;
        product.id = entry.value(kId).toString();
        product.profile_suffix = entry.value(kProfileSuffix).toString();
        const QCborMap licensing = entry.value(kLicensing).toMap();
        product.base = licensing.value(kBase).toString();
        product.extensions = ReadExtensionAccess(entry.value(kExtensions).toMap());
        const QCborArray specific = licensing.value(kSpecific).toArray();
        for (const QCborValue &specificValue : specific) {
            const QCborMap specificEntry = specificValue.toMap();
            AddNames(specificEntry.value(kLicenses), product.specificLicenses[specificEntry.value(kId).toString()]);
        }
        parts.features.addProductMembers(entry.value(kFeatures).toArray(), parts.ownerOf(product.id));
        AddNames(entry.value(kModes), product.modes);
        parts.products.append(std::move(product));
    }
}

} // namespace

ExtensionAccess ReadExtensionAccess(const QCborMap &object)
{
    ExtensionAccess access;
    AddNames(object.value(kImport), access.import);
    AddNames(object.value(kImportAsProject), access.import_as_project);
    AddNames(object.value(kExport), access.export_);
    AddNames(object.value(kExportAsProject), access.export_as_project);
    AddNames(object.value(kExportAsScene), access.export_as_scene);
    AddNames(object.value(kOpen), access.open);
    return access;
}

void ReadProductsTree(const QJsonObject &document, ProductsParts &parts)
{
    const QCborMap root = QCborMap::fromJsonObject(document);
    ReadExtensions(root.value(kExtensions).toMap(), parts);
    ReadFeatures(root.value(kFeatures).toMap().value(kFeature).toArray(), parts);
    ReadProducts(root.value(kProducts).toMap().value(kProduct).toArray(), parts);
}

} // namespace ProductEditor
