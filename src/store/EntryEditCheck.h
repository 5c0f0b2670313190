#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QByteArray>
#include <QString>

namespace ProductEditor {

// Tells, from the bytes of two versions of one definition file (products.json, or a
// layout file), whether the edit surely leaves every change that concerns one entry
// out: true when the edit stays inside one feature entry whose id it keeps (and that
// is not the entry), or inside one product's or layout's features list without adding
// or removing the entry. A history walk skips loading such versions. False whenever it
// cannot be sure; the versions are then compared in full.
PRODUCT_EDITOR_EXPORT bool EditLeavesEntry(const QByteArray &before, const QByteArray &after, bool productsFile,
                                           RecordChange::Record record, const QString &id);

} // namespace ProductEditor
