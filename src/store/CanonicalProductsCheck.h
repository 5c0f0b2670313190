#pragma once

#include "ProductEditorExport.h"

#include <QJsonObject>

namespace ProductEditor {

// Whether a products document is already what regeneration would make of it, told
// without regenerating: one walk over the document, no records, no new JSON. The
// answer is never yes for a document that regeneration would change; it may be no for
// some that it would not (a repeated product id), which then simply regenerate.
PRODUCT_EDITOR_EXPORT bool IsCanonicalProductsDocument(const QJsonObject &document);

} // namespace ProductEditor
