#pragma once

#include "ProductEditorExport.h"
#include "store/LoadReport.h"

#include <QByteArray>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace ProductEditor {

using Reader = std::function<QByteArray(const QString &)>;
using Writer = std::function<bool(const QString &, const QByteArray &)>;

class VantixJsonData;
struct ProductsParts;
struct LayoutParts;
// Makes the license catalogue from a store that has just loaded (or failed to).
using LicenseCatalogueFactory = std::function<QMap<QString, QString>(VantixJsonData &)>;

// One importable/exportable file format, keyed by its id in the store.
struct ExtensionInfo
{
    bool slices_support = false;
    bool cad_support = false;
    bool load_as_part = false;
    bool multiple_parts_support = false;
    QString title;
    QString ext;
    QSet<QString> importLicenses;
    QSet<QString> exportLicenses;
};

// One feature (application command), keyed by its id in the store.
struct VantixFeatureData
{
    QString statustip;
    QString tooltip;
    QString title;
    bool visual = true;
    bool emergency = false;
    QSet<QString> productIds;  // the only record of product membership
    QSet<QString> layoutNames; // the only record of layout membership
};

// Extension ids per role, for a product or a layout.
struct ExtensionAccess
{
    QSet<QString> export_; // "export"; the plain word is reserved in C++
    QSet<QString> export_as_project;
    QSet<QString> import;
    QSet<QString> import_as_project;
    QSet<QString> export_as_scene;
    QSet<QString> open;
};

struct LayoutData : ExtensionAccess
{
};

struct ProductData
{
    QString id;
    QString base;
    QString profile_suffix;
    ExtensionAccess extensions;
    QMap<QString, QSet<QString>> specificLicenses;
    QSet<QString> modes;
};

// Products keep document order and may repeat an id.
struct VantixProducts
{
    QVector<ProductData> products;

    // The first product with the id, or null. The const form reads without detaching.
    ProductData *Find(const QString &id);
    const ProductData *Find(const QString &id) const;
};

// The definition store: the documents of one definition folder, as read and
// decoded into records, and the documents regenerated from the records.
class PRODUCT_EDITOR_EXPORT VantixJsonData : public QObject
{
    Q_OBJECT

public:
    VantixJsonData(const QString &path, Reader reader, Writer writer,
                   const QMap<QString, QString> &licenses);
    ~VantixJsonData() override;

    bool Init(const QString &path);
    bool Load(const QString &path);
    bool Reload();
    void UpdateData();
    void UpdateResultJsons();

    bool Save();
    bool SaveAs(const QString &path);

    bool DuplicateFeatureFrom(const QString &sourceId, const QString &newId);
    bool DuplicateProductFrom(const QString &sourceId, const QString &newId);
    void RemoveExtension(const QString &id);
    void RemoveProduct(const QString &id);
    void SetBaseLicenseToProduct(const QString &productId, const QString &license);
    void SetSuffixToProduct(const QString &productId, const QString &suffix);
    bool IsLicenseBasic(const QString &license) const;

    QMap<QString, VantixFeatureData> &GetFeatures();
    VantixProducts &GetProducts();
    QMap<QString, LayoutData> &GetLayouts();
    QMap<QString, QString> &GetLicenses();
    QMap<QString, ExtensionInfo> &GetExtensions();
    QJsonObject &GetProductsOriginalJson();
    QJsonObject &GetProductsResultJson();
    QMap<QString, QJsonObject> &GetLayoutsOriginalJsons();
    QMap<QString, QJsonObject> &GetLayoutsResultJsons();

    // Read-only views for tools that do not edit (the command-line mode).
    const QMap<QString, QStringList> &GetLayoutFiles() const;
    const QDir &GetFolder() const;
    // Why the last Init or Load refused the folder, and the layout files it skipped.
    const LoadReport &GetLoadReport() const;

    // Helpers shared by generation and by the tools that inspect results.
    static QJsonArray SortedJsonArray(const QSet<QString> &set);
    static QJsonObject ExtensionAccessToJson(const ExtensionAccess &access);

signals:
    void featuresDataAboutToBeReset(QPrivateSignal);
    void featuresDataReseted(QPrivateSignal);
    void productsDataAboutToBeUpdate(QPrivateSignal);
    void productsDataUpdated(QPrivateSignal);

private:
    void _Reset();
    void _TakeParts(ProductsParts &&parts, LayoutParts &&layoutParts);
    void _GenerateResult();
    ProductData *_FindProduct(const QString &id);

    Reader reader;
    Writer writer;
    QMap<QString, VantixFeatureData> features;
    VantixProducts products;
    QMap<QString, LayoutData> layouts;
    QMap<QString, QString> licenses;
    QMap<QString, ExtensionInfo> extensions;
    QJsonObject productsOriginal;
    QJsonObject productsResult;
    QMap<QString, QJsonObject> layoutsOriginal;
    QMap<QString, QJsonObject> layoutsResult;
    QMap<QString, QStringList> layoutFiles;
    QDir folder;
    bool loaded = false; // a folder was loaded, so `folder` names it
    LoadReport loadReport;
};

} // namespace ProductEditor
