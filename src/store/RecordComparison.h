#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"
#include "store/RecordsSnapshot.h"

namespace ProductEditor {

// Compares the records of two snapshots (the loaded documents they carry are not
// compared). Changes come in the order features, products, layouts, licenses,
// extensions, each kind by id, each record's own changes in field order.
//
// A record removed and one added with the same content is a rename; an added record
// with the content of one both sides hold is its duplicate. What follows from an
// added, removed or renamed product or layout in the features' membership lists is
// left out: the record's own change says it.
//
// Records shared between the snapshots (an undo step and the store) compare at the
// cost of a walk over the keys; products are matched by the first use of each id.
PRODUCT_EDITOR_EXPORT RecordChanges CompareRecords(const RecordsSnapshot &before, const RecordsSnapshot &after);

} // namespace ProductEditor
