#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>

namespace ProductEditor {

// A place in a UTF-8 text as editors and compilers name it: 1-based line, and 1-based
// column counted in characters (UTF-16 code units) from the start of the line.
struct TextPosition
{
    int line = 0;
    int column = 0;

    // The position of byte `offset` of `bytes`, clamped into the text.
    PRODUCT_EDITOR_EXPORT static TextPosition Of(const QByteArray &bytes, int offset);
};

} // namespace ProductEditor
