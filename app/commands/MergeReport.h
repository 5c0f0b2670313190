#pragma once

#include "merge/DefinitionMerge.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// What the merging commands share: reading their inputs and naming what went wrong.

// Reads one side of a merge; an empty file is a side without the document.
bool ReadMergeInput(const QString &path, QByteArray *bytes, QString *error);

// "FILE:LINE:COLUMN: PROBLEM" for the input the merge could not read; `files` names
// base, ours and theirs in that order.
QString MergeInputError(const ProductEditor::DefinitionMergeError &error, const QStringList &files);

// "FILE: N conflict(s)" and one line per conflict's JSON path, on stderr.
void PrintConflicts(const QString &file, const QVector<ProductEditor::JsonMergeConflict> &conflicts);
