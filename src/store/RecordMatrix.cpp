#include "store/RecordMatrix.h"

#include "store/DefinitionKeys.h"

#include <QSet>

#include <algorithm>

namespace ProductEditor {

namespace {

using Column = RecordMatrix::Column;
using Row = RecordMatrix::Row;

struct Role
{
    const QString &name;
    QSet<QString> ExtensionAccess::*set;
};

// The order in which a cell names the roles: opening first, then reading, then writing.
const Role kRoles[] = {
    {Keys::kOpen, &ExtensionAccess::open},
    {Keys::kImport, &ExtensionAccess::import},
    {Keys::kImportAsProject, &ExtensionAccess::import_as_project},
    {Keys::kExport, &ExtensionAccess::export_},
    {Keys::kExportAsProject, &ExtensionAccess::export_as_project},
    {Keys::kExportAsScene, &ExtensionAccess::export_as_scene},
};

// Each product id once, at its first place.
QVector<const ProductData *> ProductColumns(const VantixProducts &products)
{
    QVector<const ProductData *> columns;
    QSet<QString> seen;
    for (const ProductData &product : products.products) {
        if (!seen.contains(product.id)) {
            seen.insert(product.id);
            columns.append(&product);
        }
    }
    return columns;
}

QStringList SortedList(const QSet<QString> &set)
{
    QStringList list(set.cbegin(), set.cend());
    std::sort(list.begin(), list.end());
    return list;
}

RecordMatrix::Cell RolesCell(const ExtensionAccess &access, const QString &id)
{
    RecordMatrix::Cell cell;
    for (const Role &role : kRoles) {
        if ((access.*role.set).contains(id))
            cell.values.append(role.name);
    }
    cell.has = !cell.values.isEmpty();
    return cell;
}

void BuildFeatures(const RecordsSnapshot &records, RecordMatrix &matrix)
{
    const QVector<const ProductData *> products = ProductColumns(records.products);
    for (const ProductData *product : products)
        matrix.columns.append({product->id, false});
    matrix.rows.reserve(records.features.size());
    for (auto it = records.features.cbegin(); it != records.features.cend(); ++it) {
        Row row{it.key(), it->title, QString(), {}};
        row.cells.reserve(products.size());
        for (const ProductData *product : products) {
            RecordMatrix::Cell cell;
            cell.has = it->productIds.contains(product->id);
            const auto licenses = product->specificLicenses.constFind(it.key());
            if (cell.has && licenses != product->specificLicenses.cend())
                cell.values = SortedList(*licenses);
            row.cells.append(cell);
        }
        matrix.rows.append(row);
    }
}

// Extensions that a product or layout names without a record of their own still get a row.
QStringList ExtensionIds(const RecordsSnapshot &records, const QVector<const ProductData *> &products)
{
    QSet<QString> ids(records.extensions.keyBegin(), records.extensions.keyEnd());
    const auto addAccess = [&ids](const ExtensionAccess &access) {
        for (const Role &role : kRoles)
            ids.unite(access.*role.set);
    };
    for (const ProductData *product : products)
        addAccess(product->extensions);
    for (const LayoutData &layout : records.layouts)
        addAccess(layout);
    return SortedList(ids);
}

void BuildExtensions(const RecordsSnapshot &records, RecordMatrix &matrix)
{
    const QVector<const ProductData *> products = ProductColumns(records.products);
    for (const ProductData *product : products)
        matrix.columns.append({product->id, false});
    for (auto it = records.layouts.cbegin(); it != records.layouts.cend(); ++it)
        matrix.columns.append({it.key(), true});
    for (const QString &id : ExtensionIds(records, products)) {
        const ExtensionInfo info = records.extensions.value(id);
        Row row{id, info.title, info.ext, {}};
        for (const ProductData *product : products)
            row.cells.append(RolesCell(product->extensions, id));
        for (const LayoutData &layout : records.layouts)
            row.cells.append(RolesCell(layout, id));
        matrix.rows.append(row);
    }
}

} // namespace

RecordMatrix RecordMatrix::Build(const RecordsSnapshot &records, Of of)
{
    RecordMatrix matrix;
    matrix.of = of;
    if (of == Of::Features)
        BuildFeatures(records, matrix);
    else
        BuildExtensions(records, matrix);
    return matrix;
}

QString RecordMatrix::OfName(Of of)
{
    return of == Of::Features ? QStringLiteral("features") : QStringLiteral("extensions");
}

} // namespace ProductEditor
