#pragma once

#include "ProductEditorExport.h"
#include "check/Diagnostic.h"

#include <QString>

namespace ProductEditor {

// What a save of the files these problems were found in drops or rewrites, in words:
// "2 unknown keys were dropped", "1 repeated key was dropped, 1 value of the wrong type
// was replaced by its default"; empty when a save loses nothing.
PRODUCT_EDITOR_EXPORT QString SaveLosses(const Diagnostics &problems);

// A problem whose value a save drops or rewrites (unknown keys, repeated keys, values of
// the wrong type), as the files held it.
PRODUCT_EDITOR_EXPORT bool IsSaveLoss(const Diagnostic &problem);

} // namespace ProductEditor
