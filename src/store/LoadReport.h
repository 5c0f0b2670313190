#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QString>
#include <QVector>

#include <optional>

namespace ProductEditor {

// Why one file of a definition folder was refused or skipped.
struct LoadProblem
{
    QString file;
    QString message;    // what is wrong with the file, e.g. "missing \"products.json\""
    QString parseError; // the parser's own text; empty unless the JSON does not parse
    int offset = -1;    // byte offset of the parse error, -1 for other problems
    int line = 0;       // 1-based line and column of that offset
    int column = 0;

    bool IsParseError() const { return offset >= 0; }
};

// What a load refused and skipped. The store records it and prints nothing.
struct LoadReport
{
    std::optional<LoadProblem> refusal; // set when the folder was not loaded
    QVector<LoadProblem> skippedLayouts;
};

// Parses `bytes`, read from `file`. When they do not parse, `problem` says why (bytes
// that are missing because the file cannot be read are told apart from bad JSON) and
// the document is null. A document that parses is returned whatever its top level.
PRODUCT_EDITOR_EXPORT QJsonDocument ParseJsonFile(const QString &file, const QByteArray &bytes,
                                                  LoadProblem *problem);

} // namespace ProductEditor
