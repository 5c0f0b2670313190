#pragma once

#include "store/RecordMatrix.h"

#include <QString>

// The matrix as one self-contained HTML page: its styles and its small filter script
// are inline, so the file opens the same in any browser, offline. The header row and
// the first column stay in view while the table scrolls; the filter box hides the
// rows whose id and title do not hold the typed text.
QString MatrixPage(const ProductEditor::RecordMatrix &matrix, const QString &source);
