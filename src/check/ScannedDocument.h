#pragma once

#include "ProductEditorExport.h"
#include "check/Diagnostic.h"
#include "check/JsonPositionScanner.h"

#include <QString>

namespace ProductEditor {

// One definition file as the checks see it: its name as the loader read it and the
// positions of its values.
struct PRODUCT_EDITOR_EXPORT ScannedDocument
{
    QString file;
    JsonPositionScanner json;

    // A warning about `node`, placed at its line, column and path.
    Diagnostic At(int node, const char *code, const QString &message) const;
    // The value's source text for a message, cut when long.
    QString ValueText(int node) const;
};

} // namespace ProductEditor
