#include "store/VantixJsonData.h"

#include "store/DefinitionFolder.h"
#include "store/DefinitionKeys.h"
#include "store/FeatureRecordsBuilder.h"
#include "store/ProductsBytesReader.h"
#include "store/ProductsTreeReader.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>

namespace ProductEditor {

using namespace Keys;


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
    const QByteArray productsBytes = reader ? reader(productsPath) : QByteArray();
    // The records are read from the text on a second core while this one parses it.
    std::future<std::optional<ProductsParts>> readAside = ReadProductsBytesAside(productsBytes);
    const QJsonDocument productsDocument = ParseJsonFile(productsPath, productsBytes, &problem);
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

    LayoutParts layoutParts = ReadLayoutParts(layoutsOriginal);
    emit featuresDataAboutToBeReset(QPrivateSignal());
    _Reset();
    std::optional<ProductsParts> parts = readAside.get();
    if (!parts) {
        parts.emplace();
        ReadProductsTree(productsOriginal, *parts);
    }
    _TakeParts(std::move(*parts), std::move(layoutParts));
    emit featuresDataReseted(QPrivateSignal());
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
    ProductsParts parts;
    ReadProductsTree(productsOriginal, parts);
    _TakeParts(std::move(parts), ReadLayoutParts(layoutsOriginal));
    emit featuresDataReseted(QPrivateSignal());
}

void VantixJsonData::_TakeParts(ProductsParts &&parts, LayoutParts &&layoutParts)
{
    ApplyProductsParts(std::move(parts), std::move(layoutParts), features, products, layouts, extensions);
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
