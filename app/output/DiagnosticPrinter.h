#pragma once

#include "check/Diagnostic.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QTextStream>

// --format of check: one line per diagnostic, a JSON object, or a SARIF 2.1.0 log.
enum class CheckFormat { Text, Json, Sarif };

// Record kinds and their counts, in the order the text output lists them.
using RecordCounts = QList<QPair<QString, int>>;

void PrintDiagnosticsText(QTextStream &out, const RecordCounts &counts, const ProductEditor::Diagnostics &diagnostics);
void PrintDiagnosticsJson(QTextStream &out, const RecordCounts &counts, const ProductEditor::Diagnostics &diagnostics);
void PrintDiagnosticsSarif(QTextStream &out, const ProductEditor::Diagnostics &diagnostics);
