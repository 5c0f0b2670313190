#pragma once

#include "store/RecordChange.h"

#include <QString>
#include <QTextStream>

enum class ChangesFormat { Text, Markdown, Json };

// Reads --format of the changes command; prints the refusal and answers false for
// another word.
bool ParseChangesFormat(const QString &text, ChangesFormat *format);

// Prints the changes between the sides `left` and `right`: as text, one line a change
// grouped by kind of record; as Markdown for a review; as the JSON report. Text and
// Markdown print nothing when there are no changes; JSON always prints its report.
void PrintChanges(QTextStream &out, const ProductEditor::RecordChanges &changes, ChangesFormat format,
                  const QString &left, const QString &right);
