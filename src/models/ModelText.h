#pragma once

#include "ProductEditorExport.h"

#include <QSet>
#include <QString>

namespace ProductEditor {

// Shown at the mouse cursor when a rename would clash with an existing id.
PRODUCT_EDITOR_EXPORT void ShowIdExistsToolTip();

// The names of a set in its own order, joined with ", ".
PRODUCT_EDITOR_EXPORT QString JoinNames(const QSet<QString> &names);

} // namespace ProductEditor
