#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

// The version of the change objects below; it grows when a member changes meaning or
// goes away, not when one is added.
constexpr int kChangeJsonVersion = 1;

// One change as a JSON object: "record" (feature, product, layout, license, extension),
// "kind" (added, removed, renamed, changed, gained, lost), "id", "text" (the sentence),
// and, when not empty, "field", "entry", "before", "after", "title" and "licenses".
PRODUCT_EDITOR_EXPORT QJsonObject ChangeToJson(const RecordChange &change);
PRODUCT_EDITOR_EXPORT QJsonArray ChangesToJson(const RecordChanges &changes);

// A whole comparison: {"version", "left", "right", "count", "changes"}, the changes as
// CompareRecords lists them (complete: they apply to the left records).
PRODUCT_EDITOR_EXPORT QJsonObject ChangesReportJson(const RecordChanges &changes, const QString &left,
                                                    const QString &right);

// The lower-case names used in the objects.
PRODUCT_EDITOR_EXPORT QString RecordName(RecordChange::Record record);
PRODUCT_EDITOR_EXPORT QString KindName(RecordChange::Kind kind);

} // namespace ProductEditor
