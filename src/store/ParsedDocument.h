#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace ProductEditor {

// One JSON document read from bytes: its top-level object, or what is wrong with it
// and where (1-based line and column, in characters).
struct ParsedDocument
{
    QJsonObject object;
    bool blank = false; // nothing but white space, as git passes for a missing side
    QString error;      // empty when the bytes hold an object or are blank
    int line = 0;
    int column = 0;

    bool ok() const { return error.isEmpty(); }
};

PRODUCT_EDITOR_EXPORT ParsedDocument ParseJsonDocument(const QByteArray &bytes);

} // namespace ProductEditor
