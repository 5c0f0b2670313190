#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QString>

namespace ProductEditor {

enum class ChangeWording {
    Statement, // for a review: feature open: title "Open" -> "Open file"
    Command,   // for the undo history: Set title of feature open
};

// One change as a short English sentence.
PRODUCT_EDITOR_EXPORT QString WordChange(const RecordChange &change, ChangeWording wording);

// The name of an edit made of `changes`, as the Edit menu shows it after "Undo": the
// command of a single change, or of an added, removed or renamed record with what
// follows from it; the fields edited of one record; otherwise what was edited, counted.
PRODUCT_EDITOR_EXPORT QString NameEdit(const RecordChanges &changes);

// The name of "Apply changes" on the Changes page, by the differences it settled.
PRODUCT_EDITOR_EXPORT QString NameApply(int differences);

// The records that `changes` touch, counted: "2 features, 1 product and 1 extension".
PRODUCT_EDITOR_EXPORT QString CountChangedRecords(const RecordChanges &changes);

} // namespace ProductEditor
