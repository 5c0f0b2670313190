#include "store/ChangeApplication.h"

#include "store/BlankRecord.h"
#include "store/ChangeWording.h"
#include "store/DefinitionKeys.h"

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

bool SetValue(QString &value, const RecordChange &change)
{
    if (value != change.before)
        return false;
    value = change.after;
    return true;
}

bool SetFlag(bool &flag, const RecordChange &change)
{
    if (flag != (change.before == QLatin1String("true")))
        return false;
    flag = change.after == QLatin1String("true");
    return true;
}

bool SetNames(QSet<QString> &names, const RecordChange &change)
{
    if (change.kind == Kind::Gained)
        names.insert(change.after);
    else if (change.kind == Kind::Lost)
        names.remove(change.before);
    else
        return false;
    return true;
}

bool ApplyField(VantixFeatureData &feature, const RecordChange &change)
{
    const QString &field = change.field;
    if (field == Keys::kTitle)
        return SetValue(feature.title, change);
    if (field == Keys::kTooltip)
        return SetValue(feature.tooltip, change);
    if (field == Keys::kStatustip)
        return SetValue(feature.statustip, change);
    if (field == Keys::kVisual)
        return SetFlag(feature.visual, change);
    if (field == Keys::kEmergency)
        return SetFlag(feature.emergency, change);
    if (field == Keys::kProducts)
        return SetNames(feature.productIds, change);
    if (field == Keys::kLayouts)
        return SetNames(feature.layoutNames, change);
    return false;
}

QSet<QString> *AccessSet(ExtensionAccess &access, const QString &role)
{
    if (role == Keys::kOpen)
        return &access.open;
    if (role == Keys::kImport)
        return &access.import;
    if (role == Keys::kImportAsProject)
        return &access.import_as_project;
    if (role == Keys::kExport)
        return &access.export_;
    if (role == Keys::kExportAsProject)
        return &access.export_as_project;
    if (role == Keys::kExportAsScene)
        return &access.export_as_scene;
    return nullptr;
}

bool ApplyField(LayoutData &layout, const RecordChange &change)
{
    QSet<QString> *names = AccessSet(layout, change.field);
    return names && SetNames(*names, change);
}

bool ApplyField(ProductData &product, const RecordChange &change)
{
    const QString &field = change.field;
    if (field == Keys::kBase)
        return SetValue(product.base, change);
    if (field == Keys::kProfileSuffix)
        return SetValue(product.profile_suffix, change);
    if (field == Keys::kModes)
        return SetNames(product.modes, change);
    if (field == Keys::kSpecific) {
        QSet<QString> &licenses = product.specificLicenses[change.entry];
        const bool applied = SetNames(licenses, change);
        if (licenses.isEmpty())
            product.specificLicenses.remove(change.entry);
        return applied;
    }
    QSet<QString> *names = AccessSet(product.extensions, field);
    return names && SetNames(*names, change);
}

bool ApplyField(ExtensionInfo &extension, const RecordChange &change)
{
    const QString &field = change.field;
    if (field == Keys::kTitle)
        return SetValue(extension.title, change);
    if (field == Keys::kExt)
        return SetValue(extension.ext, change);
    if (field == Keys::kSlicesSupport)
        return SetFlag(extension.slices_support, change);
    if (field == Keys::kCadSupport)
        return SetFlag(extension.cad_support, change);
    if (field == Keys::kLoadAsPart)
        return SetFlag(extension.load_as_part, change);
    if (field == Keys::kMultiplePartsSupport)
        return SetFlag(extension.multiple_parts_support, change);
    if (field == Keys::kImport)
        return SetNames(extension.importLicenses, change);
    if (field == Keys::kExport)
        return SetNames(extension.exportLicenses, change);
    return false;
}

bool ApplyField(QString &licenseText, const RecordChange &change)
{
    return change.field == QLatin1String("text") && SetValue(licenseText, change);
}

template <typename Value>
bool ApplyToMap(QMap<QString, Value> &records, const RecordChange &change)
{
    const auto found = records.find(change.id);
    switch (change.kind) {
    case Kind::Added:
        if (found != records.end())
            return false;
        records.insert(change.id, BlankWithTitle<Value>(change.title));
        return true;
    case Kind::Removed:
        if (found == records.end())
            return false;
        records.erase(found);
        return true;
    case Kind::Renamed:
        if (found == records.end() || records.contains(change.after))
            return false;
        records.insert(change.after, records.take(change.id));
        return true;
    default: return found != records.end() && ApplyField(*found, change);
    }
}

bool ApplyToProducts(VantixProducts &products, const RecordChange &change)
{
    ProductData *product = products.Find(change.id);
    switch (change.kind) {
    case Kind::Added:
        if (product)
            return false;
        products.products.append(ProductData{change.id, {}, {}, {}, {}, {}});
        return true;
    case Kind::Removed:
        if (!product)
            return false;
        products.products.remove(int(product - products.products.data()));
        return true;
    case Kind::Renamed:
        if (!product || products.Find(change.after))
            return false;
        product->id = change.after;
        return true;
    default: return product && ApplyField(*product, change);
    }
}

bool ApplyChange(RecordsSnapshot &records, const RecordChange &change)
{
    switch (change.record) {
    case Record::Feature: return ApplyToMap(records.features, change);
    case Record::Product: return ApplyToProducts(records.products, change);
    case Record::Layout: return ApplyToMap(records.layouts, change);
    case Record::License: return ApplyToMap(records.licenses, change);
    case Record::Extension: return ApplyToMap(records.extensions, change);
    }
    return false;
}

} // namespace

bool ApplyChanges(RecordsSnapshot &records, const RecordChanges &changes, QString *error)
{
    for (const RecordChange &change : changes) {
        if (ApplyChange(records, change))
            continue;
        if (error)
            *error = QStringLiteral("Cannot apply: %1").arg(WordChange(change, ChangeWording::Statement));
        return false;
    }
    return true;
}

} // namespace ProductEditor
