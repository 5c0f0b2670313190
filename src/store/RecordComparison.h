#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"
#include "store/RecordsSnapshot.h"

namespace ProductEditor {

// Compares the records of two snapshots (the loaded documents they carry are not
// compared). Changes come in the order features, products, layouts, licenses,
// extensions, each kind by id, each record's own changes in field order.
//
// The list is complete: ApplyChanges turns `before` into `after` with it. An added
// record comes with its title and is followed by what it holds beyond a blank record
// of its kind. A removed record and an added one with the same content are a rename;
// so are a removed and an added feature with the same title, texts and flags, and
// what else differs follows the rename under the new id. An added record with the
// content of one both sides hold names it as its source.
//
// Every membership change is listed, those that follow from a renamed or removed
// product or layout too (FoldFollowingChanges leaves them out for a reader). An extension a product or layout gains or
// loses in a role is listed with the licenses covering it in that role.
//
// Records shared between the snapshots (an undo step and the store) compare at the
// cost of a walk over the keys; products are matched by the first use of each id, and
// their order is not compared.
PRODUCT_EDITOR_EXPORT RecordChanges CompareRecords(const RecordsSnapshot &before, const RecordsSnapshot &after);

} // namespace ProductEditor
