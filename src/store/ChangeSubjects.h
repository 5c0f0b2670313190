#pragma once

#include "ProductEditorExport.h"
#include "store/RecordChange.h"

#include <QString>

namespace ProductEditor {

// Whether `change` is about the record `id` of kind `record`, or names it: a feature
// joining product P concerns P as well, a product's specific license for feature F
// concerns F and the license, a product gaining an extension concerns the extension.
// A renamed record is concerned under its old and its new id.
PRODUCT_EDITOR_EXPORT bool ChangeConcerns(const RecordChange &change, RecordChange::Record record,
                                          const QString &id);

} // namespace ProductEditor
