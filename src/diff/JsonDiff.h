#pragma once

#include "ProductEditorExport.h"
#include "json/QJsonDiffTreeItem.h"

#include <QJsonObject>
#include <QJsonValue>

#include <memory>

namespace ProductEditor {

// The comparison and the patch, on plain values and trees; no item model is involved.
// Objects are compared member by member; array elements are matched by their "id"
// (objects) or by value (everything else), so order alone is never a difference.

// Appends the differences of `left` and `right` below `node`; true when there are any.
PRODUCT_EDITOR_EXPORT bool BuildJsonDiff(const QJsonValue &left, const QJsonValue &right,
                                         QJsonDiffTreeItem *node);

// An empty diff root as the diff model shows it: key "root", an object.
PRODUCT_EDITOR_EXPORT std::unique_ptr<QJsonDiffTreeItem> NewDiffRoot();

// The diff tree of two documents, or null when they do not differ.
PRODUCT_EDITOR_EXPORT std::unique_ptr<QJsonDiffTreeItem> DiffJson(const QJsonObject &left,
                                                                  const QJsonObject &right);

// `value` with the side each difference below `node` takes; a null node changes nothing.
PRODUCT_EDITOR_EXPORT QJsonValue PatchJson(const QJsonDiffTreeItem *node, const QJsonValue &value);

} // namespace ProductEditor
