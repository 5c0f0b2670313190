#pragma once

#include "store/LoadReport.h"

#include <QString>

// The one wording of a refused file (a definition folder or a license catalogue):
// "product-editor: FILE: PROBLEM", and for JSON that does not parse
// "...: not valid JSON: ERROR at offset N (line L, column C)".
QString RefusalMessage(const ProductEditor::LoadProblem &problem);

// The problem alone, without the file: "not valid JSON: ERROR at offset N (line L, column C)".
QString ProblemDescription(const ProductEditor::LoadProblem &problem);

// The one wording of a layout file the load skipped: "product-editor: warning: FILE: skipped, PROBLEM".
QString SkippedLayoutMessage(const ProductEditor::LoadProblem &problem);
