#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QString>

namespace ProductEditor {

// "Features", "Products", ...: the heading of a kind of record.
PRODUCT_EDITOR_EXPORT QString RecordHeading(RecordChange::Record record);

// The changes as plain text, one line per change, grouped by kind of record under its
// heading; memberships that follow a renamed or removed product or layout are left
// out. Empty when there are no changes.
PRODUCT_EDITOR_EXPORT QString ChangesText(const RecordChanges &changes);

} // namespace ProductEditor
