#pragma once

#include "ProductEditorExport.h"

#include <QJsonObject>

namespace ProductEditor {

// The canonical form of `merged` when `ours` is already canonical, regenerating only
// what the merge changed: the entries of the id-keyed arrays of a products document
// that differ from ours' go through the store's regeneration on their own, the rest
// stay as ours has them. The whole document is regenerated when it is a layout file, or
// when what was kept no longer fits.
PRODUCT_EDITOR_EXPORT QJsonObject CanonicalMergedDocument(const QJsonObject &merged, const QJsonObject &ours);

} // namespace ProductEditor
