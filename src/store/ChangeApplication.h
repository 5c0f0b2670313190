#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"
#include "store/RecordsSnapshot.h"

#include <QString>

namespace ProductEditor {

// Applies a list of changes, as CompareRecords makes it, to the records of a snapshot,
// in the list's order: CompareRecords(a, b) applied to a gives the records of b (the
// order of the products aside: added products go last).
//
// False, with the first change that does not fit (a record that is missing or already
// there, a value that is not the one the change starts from) named in `error`; the
// changes before it stay applied.
PRODUCT_EDITOR_EXPORT bool ApplyChanges(RecordsSnapshot &records, const RecordChanges &changes,
                                        QString *error = nullptr);

} // namespace ProductEditor
