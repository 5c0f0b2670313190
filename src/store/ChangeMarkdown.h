#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QString>

namespace ProductEditor {

// The changes as Markdown for a pull-request comment: a heading naming the two sides
// and the count; the features' own changes; a section per product with a table of
// what it gained and lost (features, layouts, extensions per role with their
// licenses, specific licenses); then layouts, licenses and extensions. Long lists
// fold into <details> blocks. Memberships that follow a renamed or removed product or
// layout are left out. Empty when there are no changes.
PRODUCT_EDITOR_EXPORT QString ChangesMarkdown(const RecordChanges &changes, const QString &left,
                                              const QString &right);

} // namespace ProductEditor
