#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QString>

namespace ProductEditor {

// One record followed through changes: a feature, product, layout, license or extension
// by its id.
struct PRODUCT_EDITOR_EXPORT EntryChanges
{
    RecordChange::Record record = RecordChange::Record::Feature;
    QString id;

    // The changes that concern the record: its own, and those of other records that name
    // it (a feature joining a product is a change of both; a license granted for a
    // feature is a change of the product, the feature and the license).
    RecordChanges Of(const RecordChanges &changes) const;
    // The id the record had before `changes`: the old id when they rename it to `id`.
    QString IdBefore(const RecordChanges &changes) const;

    // "feature", "product", "layout", "license" or "extension".
    static QString KindName(RecordChange::Record record);
    // The kind a word names (also "licence"); false for any other word.
    static bool ParseKind(const QString &word, RecordChange::Record *record);
};

} // namespace ProductEditor
