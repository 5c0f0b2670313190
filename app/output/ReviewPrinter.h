#pragma once

#include "store/RecordChange.h"

#include <QString>
#include <QTextStream>

// Prints `changes` for a review, in Markdown: a heading naming the two sides, a section
// per kind of record with one sentence per change, and the count. Prints nothing when
// there are no changes.
void PrintReview(QTextStream &out, const ProductEditor::RecordChanges &changes, const QString &leftSide,
                 const QString &rightSide);
