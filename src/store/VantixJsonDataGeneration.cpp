#include "store/VantixJsonData.h"

#include "store/DefinitionFolder.h"
#include "store/DefinitionKeys.h"
#include "store/JsonText.h"

#include <QDebug>
#include <QHash>
#include <QJsonDocument>

#include <algorithm>

namespace ProductEditor {

using namespace Keys;

namespace {

const QString kFolderWarning = QStringLiteral("Couldn't create Products folder.");

} // namespace

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
    // keeps every list sorted and free of duplicates. One JSON value per id serves
    // its entry and every list: a value made from a string is a container of its own.
    QHash<QString, QJsonArray> featuresOfProduct;
    QHash<QString, QJsonArray> featuresOfLayout;
    QJsonArray featureEntries;
    for (auto it = features.cbegin(); it != features.cend(); ++it) {
        const VantixFeatureData &feature = it.value();
        const QJsonValue id(it.key());
        QJsonObject entry;
        entry.insert(kId, id);
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
            featuresOfProduct[productId].append(id);
        for (const QString &layoutName : feature.layoutNames)
            featuresOfLayout[layoutName].append(id);
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
        entry.insert(kFeatures, owned == featuresOfProduct.cend() ? QJsonArray() : owned.value());
        productEntries.append(entry);
    }
    productsResult.insert(kProducts, QJsonObject{{kProduct, productEntries}});

    for (auto it = layouts.cbegin(); it != layouts.cend(); ++it) {
        const auto owned = featuresOfLayout.constFind(it.key());
        layoutsResult[it.key()] = QJsonObject{
            {kExtensions, ExtensionAccessToJson(it.value())},
            {kFeatures, owned == featuresOfLayout.cend() ? QJsonArray() : owned.value()}};
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
    // The message names the products folder for the layouts folder too.
    for (const QString &sub : {DefinitionFolder::ProductsFolderName(), DefinitionFolder::LayoutsFolderName()}) {
        if (!dir.exists(sub) && !dir.mkdir(sub)) {
            qWarning().noquote() << kFolderWarning;
            return false;
        }
    }
    const DefinitionFolder layout(path);
    _GenerateResult();
    if (writer)
        writer(layout.ProductsFile(), JsonText(QJsonDocument(productsResult), QJsonDocument::Indented));

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
            writer(layout.LayoutFile(it.key()),
                   JsonText(QJsonDocument(document), QJsonDocument::Indented));
    }
    return true;
}

} // namespace ProductEditor
