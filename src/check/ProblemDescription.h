#pragma once

#include "ProductEditorExport.h"
#include "store/LoadReport.h"

#include <QString>

namespace ProductEditor {

// What is wrong with a refused or skipped file, without the file:
// "not valid JSON: ERROR at offset N (line L, column C)" for JSON that does not parse.
PRODUCT_EDITOR_EXPORT QString ProblemDescription(const LoadProblem &problem);

} // namespace ProductEditor
