#pragma once

#include "store/FolderTransaction.h"
#include "store/LoadReport.h"

#include <QString>
#include <QStringList>

#include <optional>

// The one wording of a refused file (a definition folder or a license catalogue):
// "product-editor: FILE: PROBLEM", and for JSON that does not parse
// "...: not valid JSON: ERROR at offset N (line L, column C)".
QString RefusalMessage(const ProductEditor::LoadProblem &problem);

// The one wording of a layout file the load skipped: "product-editor: warning: FILE: skipped, PROBLEM".
QString SkippedLayoutMessage(const ProductEditor::LoadProblem &problem);

// What the open did about an interrupted save: "product-editor: warning: FILE: WHAT AND WHY".
QStringList RecoveryWarnings(const ProductEditor::FolderRecovery &recovery);

// What opening a folder tells on stderr: one line per skipped layout file, then the
// refusal of the folder or of the catalogue file if there is one.
QStringList OpenMessages(const ProductEditor::LoadReport &report,
                         const std::optional<ProductEditor::LoadProblem> &catalogueProblem);
