#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"
#include "store/VantixJsonData.h"

#include <QMap>
#include <QString>

namespace ProductEditor {

// The changes as a reader wants them: without the membership changes of features that
// a removed or renamed product or layout explains (leaving a removed owner, and
// leaving an owner for its new name). Joining an added owner stays: it is what the new
// owner holds. The list that CompareRecords makes keeps them, so that it applies.
PRODUCT_EDITOR_EXPORT RecordChanges FoldFollowingChanges(const RecordChanges &changes);

// Fills `licenses` of the extensions that products or layouts gained or lost in a role:
// the licenses covering the extension in that role, on the side that has it.
void NameCoveringLicenses(RecordChanges &changes, const QMap<QString, ExtensionInfo> &before,
                          const QMap<QString, ExtensionInfo> &after);

} // namespace ProductEditor
