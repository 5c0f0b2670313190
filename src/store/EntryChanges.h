#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"
#include "store/RecordsSnapshot.h"

#include <QString>

namespace ProductEditor {

// One record followed through changes: a feature, product, layout, license or extension
// by its id.
struct PRODUCT_EDITOR_EXPORT EntryChanges
{
    RecordChange::Record record = RecordChange::Record::Feature;
    QString id;

    // The changes that concern the record (ChangeConcerns), as a reader wants them.
    RecordChanges Of(const RecordChanges &changes) const;
    // The changes between two sets of records that concern the record: Of(CompareRecords).
    // For a feature the other features are left out of the comparison, but for those
    // removed when the feature is new (one may have been renamed to it), which keeps two
    // loads of a large folder, or a folder against none, cheap to compare. A feature added
    // as a copy of another is then not named as a duplicate.
    RecordChanges Between(const RecordsSnapshot &before, const RecordsSnapshot &after) const;
    // The id the record had before `changes`: the old id when they rename it to `id`.
    QString IdBefore(const RecordChanges &changes) const;

    // The kind a word names ("feature", "product", "layout", "license" or "licence",
    // "extension"); false for any other word.
    static bool ParseKind(const QString &word, RecordChange::Record *record);
};

} // namespace ProductEditor
