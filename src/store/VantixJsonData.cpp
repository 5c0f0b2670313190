#include "store/VantixJsonData.h"

#include <QDebug>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>

namespace ProductEditor {

namespace {

const QString kProducts = QStringLiteral("products");
const QString kProductsJson = QStringLiteral("products.json");
const QString kLayouts = QStringLiteral("layouts");
const QString kExtensions = QStringLiteral("extensions");
const QString kExtension = QStringLiteral("extension");
const QString kCoverage = QStringLiteral("lic_coveradge");
const QString kExport = QStringLiteral("export");
const QString kExportAsProject = QStringLiteral("export_as_project");
const QString kImport = QStringLiteral("import");
const QString kImportAsProject = QStringLiteral("import_as_project");
const QString kExportAsScene = QStringLiteral("export_as_scene");
const QString kOpen = QStringLiteral("open");
const QString kId = QStringLiteral("id");
const QString kLic = QStringLiteral("lic");
const QString kFeatures = QStringLiteral("features");
const QString kFeature = QStringLiteral("feature");
const QString kProduct = QStringLiteral("product");
const QString kTitle = QStringLiteral("title");
const QString kTooltip = QStringLiteral("tooltip");
const QString kStatustip = QStringLiteral("statustip");
const QString kVisual = QStringLiteral("visual");
const QString kEmergency = QStringLiteral("emergency");
const QString kExt = QStringLiteral("ext");
const QString kCadSupport = QStringLiteral("cad_support");
const QString kLoadAsPart = QStringLiteral("load_as_part");
const QString kSlicesSupport = QStringLiteral("slices_support");
const QString kMultiplePartsSupport = QStringLiteral("multiple_parts_support");
const QString kProfileSuffix = QStringLiteral("profile_suffix");
const QString kLicensing = QStringLiteral("licensing");
const QString kBase = QStringLiteral("base");
const QString kSpecific = QStringLiteral("specific");
const QString kLicenses = QStringLiteral("licenses");
const QString kModes = QStringLiteral("modes");
const QString kFolderWarning = QStringLiteral("Couldn't create Products folder.");

bool ReadBool(const QJsonObject &object, const QString &key, bool fallback)
{
    const QJsonValue value = object.value(key);
    return value.isBool() ? value.toBool() : fallback;
}

// Non-string elements read as the empty name, so they still become members.
void InsertNames(const QJsonValue &array, QSet<QString> &into)
{
    const QJsonArray names = array.toArray();
    for (const QJsonValue &name : names)
        into.insert(name.toString());
}

ExtensionAccess ReadExtensionAccess(const QJsonObject &object)
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
    QDir dir(path);
    if (!dir.exists())
        return refuse(path, QFileInfo::exists(path) ? QStringLiteral("not a folder")
                                                    : QStringLiteral("the definition folder does not exist"));
    if (!dir.cd(kProducts))
        return refuse(QDir(path).filePath(kProducts), QStringLiteral("missing \"products\" folder"));
    if (!dir.exists(kProductsJson))
        return refuse(dir.filePath(kProductsJson), QStringLiteral("missing \"products.json\""));
    folder = QDir(path);
    return Load(folder.path());
}

bool VantixJsonData::Load(const QString &path)
{
    const QDir root(path);
    // Without a "products" sub-folder the document is looked up in the folder itself.
    const QDir productsDir(root.filePath(kProducts));
    const QString productsPath = (productsDir.exists() ? productsDir : root).filePath(kProductsJson);
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
    const QDir layoutsDir(root.filePath(kLayouts));
    const QFileInfoList files = layoutsDir.exists()
        ? layoutsDir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Unsorted)
        : QFileInfoList();
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

    const QJsonObject extensionsObject = productsOriginal.value(kExtensions).toObject();
    const QJsonArray extensionEntries = extensionsObject.value(kExtension).toArray();
    for (const QJsonValue &entryValue : extensionEntries) {
        const QJsonObject entry = entryValue.toObject();
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

    const QJsonObject coverage = extensionsObject.value(kCoverage).toObject();
    const auto readCoverage = [this](const QJsonArray &entries, QSet<QString> ExtensionInfo::*set) {
        for (const QJsonValue &entryValue : entries) {
            const QJsonObject entry = entryValue.toObject();
            ExtensionInfo &info = extensions[entry.value(kId).toString()];
            const QJsonArray names = entry.value(kLic).toArray();
            for (const QJsonValue &name : names)
                (info.*set).insert(name.toString());
        }
    };
    readCoverage(coverage.value(kExport).toArray(), &ExtensionInfo::exportLicenses);
    readCoverage(coverage.value(kImport).toArray(), &ExtensionInfo::importLicenses);

    const QJsonArray featureEntries = productsOriginal.value(kFeatures).toObject().value(kFeature).toArray();
    for (const QJsonValue &entryValue : featureEntries) {
        const QJsonObject entry = entryValue.toObject();
        VantixFeatureData feature;
        feature.statustip = entry.value(kStatustip).toString();
        feature.title = entry.value(kTitle).toString();
        feature.tooltip = entry.value(kTooltip).toString();
        feature.visual = ReadBool(entry, kVisual, true);
        feature.emergency = ReadBool(entry, kEmergency, false);
        features.insert(entry.value(kId).toString(), feature);
    }

    // Membership lists name features by id several times per feature; a hash over
    // the map's nodes (which never move) keeps those lookups off the tree.
    QHash<QString, VantixFeatureData *> featureById;
    featureById.reserve(features.size());
    for (auto it = features.begin(); it != features.end(); ++it)
        featureById.insert(it.key(), &it.value());
    const auto featureFor = [this, &featureById](const QString &id) -> VantixFeatureData & {
        VantixFeatureData *&slot = featureById[id];
        if (!slot)
            slot = &features[id];
        return *slot;
    };

    const QJsonArray productEntries = productsOriginal.value(kProducts).toObject().value(kProduct).toArray();
    products.products.reserve(productEntries.size());
    for (const QJsonValue &entryValue : productEntries) {
        const QJsonObject entry = entryValue.toObject();
        ProductData product;
        product.id = entry.value(kId).toString();
        product.profile_suffix = entry.value(kProfileSuffix).toString();
        const QJsonObject licensing = entry.value(kLicensing).toObject();
        product.base = licensing.value(kBase).toString();
        product.extensions = ReadExtensionAccess(entry.value(kExtensions).toObject());
        const QJsonArray specific = licensing.value(kSpecific).toArray();
        for (const QJsonValue &specificValue : specific) {
            const QJsonObject specificEntry = specificValue.toObject();
            QSet<QString> &names = product.specificLicenses[specificEntry.value(kId).toString()];
            const QJsonArray licenseNames = specificEntry.value(kLicenses).toArray();
            for (const QJsonValue &name : licenseNames)
                names.insert(name.toString());
        }
        const QJsonArray featureIds = entry.value(kFeatures).toArray();
        for (const QJsonValue &featureId : featureIds)
            featureFor(featureId.toString()).productIds.insert(product.id);
        InsertNames(entry.value(kModes), product.modes);
        products.products.append(std::move(product));
    }

    for (auto it = layoutsOriginal.cbegin(); it != layoutsOriginal.cend(); ++it) {
        const QJsonObject &layout = it.value();
        layouts[it.key()] = LayoutData{ReadExtensionAccess(layout.value(kExtensions).toObject())};
        const QJsonArray featureIds = layout.value(kFeatures).toArray();
        for (const QJsonValue &featureId : featureIds)
            featureFor(featureId.toString()).layoutNames.insert(it.key());
    }

    emit featuresDataReseted(QPrivateSignal());
}

void VantixJsonData::UpdateResultJsons()
{
    _GenerateResult();
}

QJsonArray VantixJsonData::SortedJsonArray(const QSet<QString> &set)
{
    QStringList names(set.cbegin(), set.cend());
    std::sort(names.begin(), names.end());
    return QJsonArray::fromStringList(names);
}

QJsonObject VantixJsonData::ExtensionAccessToJson(const ExtensionAccess &access)
{
    QJsonObject object;
    object.insert(kExport, SortedJsonArray(access.export_));
    object.insert(kExportAsProject, SortedJsonArray(access.export_as_project));
    object.insert(kImport, SortedJsonArray(access.import));
    object.insert(kImportAsProject, SortedJsonArray(access.import_as_project));
    object.insert(kExportAsScene, SortedJsonArray(access.export_as_scene));
    object.insert(kOpen, SortedJsonArray(access.open));
    return object;
}

void VantixJsonData::_GenerateResult()
{
    productsResult = productsOriginal;

    QJsonArray entries;
    QJsonArray exportCoverage;
    QJsonArray importCoverage;
    for (auto it = extensions.cbegin(); it != extensions.cend(); ++it) {
        const ExtensionInfo &info = it.value();
        QJsonObject entry;
        entry.insert(kId, it.key());
        entry.insert(kCadSupport, info.cad_support);
        entry.insert(kMultiplePartsSupport, info.multiple_parts_support);
        entry.insert(kLoadAsPart, info.load_as_part);
        entry.insert(kExt, info.ext);
        entry.insert(kSlicesSupport, info.slices_support);
        entry.insert(kTitle, info.title);
        entries.append(entry);
        if (!info.exportLicenses.isEmpty())
            exportCoverage.append(QJsonObject{{kId, it.key()}, {kLic, SortedJsonArray(info.exportLicenses)}});
        if (!info.importLicenses.isEmpty())
            importCoverage.append(QJsonObject{{kId, it.key()}, {kLic, SortedJsonArray(info.importLicenses)}});
    }
    QJsonObject extensionsObject = productsResult.value(kExtensions).toObject();
    extensionsObject.insert(kExtension, entries);
    QJsonObject coverage = extensionsObject.value(kCoverage).toObject();
    coverage.insert(kExport, exportCoverage);
    coverage.insert(kImport, importCoverage);
    extensionsObject.insert(kCoverage, coverage);
    productsResult.insert(kExtensions, extensionsObject);

    // Feature ids arrive in ascending order and once per owner, so appending
    // keeps every list sorted and free of duplicates.
    QHash<QString, QStringList> featuresOfProduct;
    QHash<QString, QStringList> featuresOfLayout;
    QJsonArray featureEntries;
    for (auto it = features.cbegin(); it != features.cend(); ++it) {
        const VantixFeatureData &feature = it.value();
        QJsonObject entry;
        entry.insert(kId, it.key());
        if (!feature.statustip.isEmpty())
            entry.insert(kStatustip, feature.statustip);
        if (!feature.title.isEmpty())
            entry.insert(kTitle, feature.title);
        if (!feature.tooltip.isEmpty())
            entry.insert(kTooltip, feature.tooltip);
        if (!feature.visual)
            entry.insert(kVisual, false);
        if (feature.emergency)
            entry.insert(kEmergency, true);
        for (const QString &productId : feature.productIds)
            featuresOfProduct[productId].append(it.key());
        for (const QString &layoutName : feature.layoutNames)
            featuresOfLayout[layoutName].append(it.key());
        featureEntries.append(entry);
    }
    QJsonObject featuresObject = productsResult.value(kFeatures).toObject();
    featuresObject.insert(kFeature, featureEntries);
    productsResult.insert(kFeatures, featuresObject);

    QJsonArray productEntries;
    for (const ProductData &product : products.products) {
        QJsonObject entry;
        entry.insert(kId, product.id);
        entry.insert(kProfileSuffix, product.profile_suffix);
        entry.insert(kModes, SortedJsonArray(product.modes));
        QJsonArray specific;
        for (auto it = product.specificLicenses.cbegin(); it != product.specificLicenses.cend(); ++it)
            specific.append(QJsonObject{{kId, it.key()}, {kLicenses, SortedJsonArray(it.value())}});
        entry.insert(kLicensing, QJsonObject{{kBase, product.base}, {kSpecific, specific}});
        entry.insert(kExtensions, ExtensionAccessToJson(product.extensions));
        const auto owned = featuresOfProduct.constFind(product.id);
        entry.insert(kFeatures, owned == featuresOfProduct.cend() ? QJsonArray() : QJsonArray::fromStringList(owned.value()));
        productEntries.append(entry);
    }
    productsResult.insert(kProducts, QJsonObject{{kProduct, productEntries}});

    for (auto it = layouts.cbegin(); it != layouts.cend(); ++it) {
        const auto owned = featuresOfLayout.constFind(it.key());
        layoutsResult[it.key()] = QJsonObject{
            {kExtensions, ExtensionAccessToJson(it.value())},
            {kFeatures, owned == featuresOfLayout.cend() ? QJsonArray() : QJsonArray::fromStringList(owned.value())}};
    }
}

bool VantixJsonData::Save()
{
    if (!loaded)
        return false;
    return SaveAs(folder.absolutePath());
}

bool VantixJsonData::SaveAs(const QString &path)
{
    QDir dir(path);
    if (!dir.exists(kProducts) && !dir.mkdir(kProducts)) {
        qWarning().noquote() << kFolderWarning;
        return false;
    }
    // The message names the products folder for the layouts folder too.
    if (!dir.exists(kLayouts) && !dir.mkdir(kLayouts)) {
        qWarning().noquote() << kFolderWarning;
        return false;
    }
    // Paths are joined rather than reached with cd, so an entry that is not a
    // folder makes the writer fail instead of sending files elsewhere.
    const QDir productsDir(dir.filePath(kProducts));
    const QDir layoutsDir(dir.filePath(kLayouts));
    _GenerateResult();
    if (writer)
        writer(productsDir.filePath(kProductsJson), QJsonDocument(productsResult).toJson(QJsonDocument::Indented));

    for (auto it = layoutFiles.cbegin(); it != layoutFiles.cend(); ++it) {
        QJsonObject fileLayouts;
        for (const QString &name : it.value()) {
            auto result = layoutsResult.find(name);
            if (result == layoutsResult.end())
                result = layoutsResult.insert(name, QJsonObject());
            fileLayouts.insert(name, result.value());
        }
        const QJsonObject document{{kLayouts, fileLayouts}};
        if (writer)
            writer(layoutsDir.filePath(QFileInfo(it.key()).fileName()),
                   QJsonDocument(document).toJson(QJsonDocument::Indented));
    }
    return true;
}

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
