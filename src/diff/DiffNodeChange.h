#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <optional>

namespace ProductEditor {

class QJsonDiffTreeItem;

// The record change that a row of a definition document's diff stands for, from the
// left (loaded) side to the right (regenerated) one: an element that is a record, a
// field of one, or a name in one of its lists. Nothing for other rows (unknown keys,
// values that only differ by a default written out, rows with rows below them).
PRODUCT_EDITOR_EXPORT std::optional<RecordChange> RecordChangeOfDiffNode(const QJsonDiffTreeItem &node);

} // namespace ProductEditor
