#include "store/VantixJsonData.h"

#include "store/DefinitionFolder.h"
#include "store/DefinitionKeys.h"
#include "store/FeatureRecordsBuilder.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>

namespace ProductEditor {

using namespace Keys;

namespace {

// The records are read through the CBOR views of the parsed documents, which share
// their storage: a QJsonValue copies every string and object member it is asked for.
bool ReadBool(const QCborMap &object, const QString &key, bool fallback)
{
    const QCborValue value = object.value(key);
    return value.isBool() ? value.toBool() : fallback;
}

// Non-string elements read as the empty name, so they still become members.
void InsertNames(const QCborValue &array, QSet<QString> &into)
{
    const QCborArray names = array.toArray();
    for (const QCborValue &name : names)
        into.insert(name.toString());
}

ExtensionAccess ReadExtensionAccess(const QCborMap &object)
{
    ExtensionAccess access;
    InsertNames(object.value(kImport), access.import);
    InsertNames(object.value(kImportAsProject), access.import_as_project);
    InsertNames(object.value(kExport), access.export_);
    InsertNames(object.value(kExportAsProject), access.export_as_project);
    InsertNames(object.value(kExportAsScene), access.export_as_scene);
    InsertNames(object.value(kOpen), access.open);
    return access;
}

} // namespace

VantixJsonData::VantixJsonData(const QString &path, Reader reader, Writer writer,
                               const QMap<QString, QString> &licenses)
    : reader(std::move(reader))
    , writer(std::move(writer))
    , licenses(licenses)
    , folder(QString())
{
    Init(path);
}

VantixJsonData::~VantixJsonData() = default;

bool VantixJsonData::Init(const QString &path)
{
    loadReport = LoadReport();
    const auto refuse = [this](const QString &file, const QString &message) {
        loadReport.refusal = LoadProblem();
        loadReport.refusal->file = file;
        loadReport.refusal->message = message;
        return false;
    };
    if (!QDir(path).exists())
        return refuse(path, QFileInfo::exists(path) ? QStringLiteral("not a folder")
                                                    : QStringLiteral("the definition folder does not exist"));
    const DefinitionFolder layout(path);
    if (!QFileInfo(layout.ProductsFolder()).isDir())
        return refuse(layout.ProductsFolder(), QStringLiteral("missing \"products\" folder"));
    if (!QFileInfo::exists(layout.ProductsFile()))
        return refuse(layout.ProductsFile(), QStringLiteral("missing \"products.json\""));
    folder = QDir(path);
    return Load(folder.path());
}

bool VantixJsonData::Load(const QString &path)
{
    const DefinitionFolder layout(path);
    const QString productsPath = layout.LoadedProductsFile();
    loadReport = LoadReport();
    LoadProblem problem;
    const QJsonDocument productsDocument =
        ParseJsonFile(productsPath, reader ? reader(productsPath) : QByteArray(), &problem);
    const QJsonObject productsObject = productsDocument.object();
    if (productsObject.isEmpty()) {
        if (problem.message.isEmpty())
            problem.message = productsDocument.isObject() ? QStringLiteral("\"products.json\" is an empty JSON object")
                                                          : QStringLiteral("\"products.json\" is not a JSON object");
        loadReport.refusal = problem;
        return false;
    }

    productsOriginal = productsObject;
    productsResult = productsObject;

    // Files are visited in listing order; later files win on a shared name.
    const QFileInfoList files = layout.LayoutFiles();
    for (const QFileInfo &file : files) {
        const QString filePath = file.filePath();
        LoadProblem skipped;
        const QJsonObject document =
            ParseJsonFile(filePath, reader ? reader(filePath) : QByteArray(), &skipped).object();
        if (document.isEmpty()) {
            if (skipped.message.isEmpty())
                skipped.message = QStringLiteral("not a non-empty JSON object");
            loadReport.skippedLayouts.append(skipped);
            continue;
        }
        const QJsonObject layoutsObject = document.value(kLayouts).toObject();
        for (auto it = layoutsObject.begin(); it != layoutsObject.end(); ++it) {
            layoutsOriginal.insert(it.key(), it.value().toObject());
            layoutFiles[filePath].append(it.key());
        }
    }
    layoutsResult = layoutsOriginal;

    UpdateData();
    folder = QDir(path);
    loaded = true;
    return true;
}

bool VantixJsonData::Reload()
{
    // An empty handle means the working folder; never read or write there by accident.
    if (!loaded)
        return false;
    return Load(folder.path());
}

void VantixJsonData::_Reset()
{
    features.clear();
    products.products.resize(0);
    layouts.clear();
}

void VantixJsonData::UpdateData()
{
    emit featuresDataAboutToBeReset(QPrivateSignal());
    _Reset();

    const QCborMap root = QCborMap::fromJsonObject(productsOriginal);
    const QCborMap extensionsObject = root.value(kExtensions).toMap();
    const QCborArray extensionEntries = extensionsObject.value(kExtension).toArray();
    for (const QCborValue &entryValue : extensionEntries) {
        const QCborMap entry = entryValue.toMap();
        ExtensionInfo &info = extensions[entry.value(kId).toString()];
        info.cad_support = ReadBool(entry, kCadSupport, false);
        info.load_as_part = ReadBool(entry, kLoadAsPart, false);
        info.ext = entry.value(kExt).toString();
        info.slices_support = ReadBool(entry, kSlicesSupport, false);
        info.multiple_parts_support = ReadBool(entry, kMultiplePartsSupport, false);
        info.title = entry.value(kTitle).toString();
        info.importLicenses.clear();
        info.exportLicenses.clear();
    }

    const QCborMap coverage = extensionsObject.value(kCoverage).toMap();
    const auto readCoverage = [this](const QCborArray &entries, QSet<QString> ExtensionInfo::*set) {
        for (const QCborValue &entryValue : entries) {
            const QCborMap entry = entryValue.toMap();
            InsertNames(entry.value(kLic), extensions[entry.value(kId).toString()].*set);
        }
    };
    readCoverage(coverage.value(kExport).toArray(), &ExtensionInfo::exportLicenses);
    readCoverage(coverage.value(kImport).toArray(), &ExtensionInfo::importLicenses);

    const QCborArray featureEntries = root.value(kFeatures).toMap().value(kFeature).toArray();
    FeatureRecordsBuilder builder(int(featureEntries.size()));
    for (const QCborValue &entryValue : featureEntries) {
        const QCborMap entry = entryValue.toMap();
        VantixFeatureData feature;
        feature.statustip = entry.value(kStatustip).toString();
        feature.title = entry.value(kTitle).toString();
        feature.tooltip = entry.value(kTooltip).toString();
        feature.visual = ReadBool(entry, kVisual, true);
        feature.emergency = ReadBool(entry, kEmergency, false);
        builder.addEntry(entry.value(kId).toString(), std::move(feature));
    }

    // Products may repeat an id; their sets hold one shared copy of each name.
    QHash<QString, int> productOwners;
    QVector<QString> productNames;
    const QCborArray productEntries = root.value(kProducts).toMap().value(kProduct).toArray();
    products.products.reserve(int(productEntries.size()));
    for (const QCborValue &entryValue : productEntries) {
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
            InsertNames(specificEntry.value(kLicenses), product.specificLicenses[specificEntry.value(kId).toString()]);
        }
        int owner = productOwners.value(product.id, -1);
        if (owner < 0) {
            owner = productNames.size();
            productOwners.insert(product.id, owner);
            productNames.append(product.id);
        }
        builder.addProductMembers(entry.value(kFeatures).toArray(), owner);
        InsertNames(entry.value(kModes), product.modes);
        products.products.append(std::move(product));
    }

    QVector<QString> layoutNames;
    for (auto it = layoutsOriginal.cbegin(); it != layoutsOriginal.cend(); ++it) {
        const QCborMap layout = QCborMap::fromJsonObject(it.value());
        layouts[it.key()] = LayoutData{ReadExtensionAccess(layout.value(kExtensions).toMap())};
        builder.addLayoutMembers(layout.value(kFeatures).toArray(), layoutNames.size());
        layoutNames.append(it.key());
    }
    builder.build(features, productNames, layoutNames);

    emit featuresDataReseted(QPrivateSignal());
}

QMap<QString, VantixFeatureData> &VantixJsonData::GetFeatures() { return features; }
VantixProducts &VantixJsonData::GetProducts() { return products; }
QMap<QString, LayoutData> &VantixJsonData::GetLayouts() { return layouts; }
QMap<QString, QString> &VantixJsonData::GetLicenses() { return licenses; }
QMap<QString, ExtensionInfo> &VantixJsonData::GetExtensions() { return extensions; }
QJsonObject &VantixJsonData::GetProductsOriginalJson() { return productsOriginal; }
QJsonObject &VantixJsonData::GetProductsResultJson() { return productsResult; }
QMap<QString, QJsonObject> &VantixJsonData::GetLayoutsOriginalJsons() { return layoutsOriginal; }
QMap<QString, QJsonObject> &VantixJsonData::GetLayoutsResultJsons() { return layoutsResult; }
const QMap<QString, QStringList> &VantixJsonData::GetLayoutFiles() const { return layoutFiles; }
const QDir &VantixJsonData::GetFolder() const { return folder; }
const LoadReport &VantixJsonData::GetLoadReport() const { return loadReport; }

} // namespace ProductEditor
