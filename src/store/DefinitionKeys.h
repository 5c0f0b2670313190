#pragma once

#include <QString>

namespace ProductEditor {

// The keys of the definition documents, spelled as the documents spell them.
namespace Keys {

inline const QString kProducts = QStringLiteral("products");
inline const QString kLayouts = QStringLiteral("layouts");
inline const QString kExtensions = QStringLiteral("extensions");
inline const QString kExtension = QStringLiteral("extension");
inline const QString kCoverage = QStringLiteral("lic_coveradge");
inline const QString kExport = QStringLiteral("export");
inline const QString kExportAsProject = QStringLiteral("export_as_project");
inline const QString kImport = QStringLiteral("import");
inline const QString kImportAsProject = QStringLiteral("import_as_project");
inline const QString kExportAsScene = QStringLiteral("export_as_scene");
inline const QString kOpen = QStringLiteral("open");
inline const QString kId = QStringLiteral("id");
inline const QString kLic = QStringLiteral("lic");
inline const QString kFeatures = QStringLiteral("features");
inline const QString kFeature = QStringLiteral("feature");
inline const QString kProduct = QStringLiteral("product");
inline const QString kTitle = QStringLiteral("title");
inline const QString kTooltip = QStringLiteral("tooltip");
inline const QString kStatustip = QStringLiteral("statustip");
inline const QString kVisual = QStringLiteral("visual");
inline const QString kEmergency = QStringLiteral("emergency");
inline const QString kExt = QStringLiteral("ext");
inline const QString kCadSupport = QStringLiteral("cad_support");
inline const QString kLoadAsPart = QStringLiteral("load_as_part");
inline const QString kSlicesSupport = QStringLiteral("slices_support");
inline const QString kMultiplePartsSupport = QStringLiteral("multiple_parts_support");
inline const QString kProfileSuffix = QStringLiteral("profile_suffix");
inline const QString kLicensing = QStringLiteral("licensing");
inline const QString kBase = QStringLiteral("base");
inline const QString kSpecific = QStringLiteral("specific");
inline const QString kLicenses = QStringLiteral("licenses");
inline const QString kModes = QStringLiteral("modes");

} // namespace Keys

} // namespace ProductEditor
