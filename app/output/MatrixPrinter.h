#pragma once

#include "store/RecordMatrix.h"

#include <QString>
#include <QTextStream>

// --format of matrix.
enum class MatrixFormat { Csv, Markdown, Html, Json };

// Reads --format; false for a word that names no format.
bool ParseMatrixFormat(const QString &text, MatrixFormat *format);

// The text of a cell as the tables show it: `mark` for a feature the product has
// without specific licenses, else the licenses or roles joined with `separator`.
QString MatrixCellText(const ProductEditor::RecordMatrix::Cell &cell, const QString &mark, const QString &separator);
// A column's heading: a product's id, or "NAME (layout)".
QString MatrixColumnTitle(const ProductEditor::RecordMatrix::Column &column);

// `source` names the folder in the page title and the JSON.
void PrintMatrix(QTextStream &out, const ProductEditor::RecordMatrix &matrix, MatrixFormat format,
                 const QString &source);
