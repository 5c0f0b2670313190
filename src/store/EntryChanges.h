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

    // The changes that concern the record (ChangeConcerns), as a reader wants them.
    RecordChanges Of(const RecordChanges &changes) const;
    // The id the record had before `changes`: the old id when they rename it to `id`.
    QString IdBefore(const RecordChanges &changes) const;

    // The kind a word names ("feature", "product", "layout", "license" or "licence",
    // "extension"); false for any other word.
    static bool ParseKind(const QString &word, RecordChange::Record *record);
};

} // namespace ProductEditor
