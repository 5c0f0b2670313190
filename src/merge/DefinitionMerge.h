#pragma once

#include "ProductEditorExport.h"
#include "merge/ConflictMarkers.h"
#include "merge/JsonMerge.h"

#include <QByteArray>
#include <QString>
#include <QVector>

namespace ProductEditor {

// Why an input could not be merged: which one, where, and what is wrong.
struct DefinitionMergeError
{
    enum Input { None, Base, Ours, Theirs };

    Input input = None;
    int line = 0;
    int column = 0;
    QString problem;
};

struct DefinitionMergeResult
{
    QByteArray bytes; // the merged document as normalize writes it, with conflict blocks
    QVector<JsonMergeConflict> conflicts;
    DefinitionMergeError error;

    bool ok() const { return error.input == DefinitionMergeError::None; }
    bool clean() const { return ok() && conflicts.isEmpty(); }
};

// What the inputs are known to be. Canonical inputs (what the editor and normalize
// write) are merged as they are and only what the merge changed is regenerated; any
// other input is first brought into its canonical form, which costs a regeneration of
// each whole document.
enum class MergeInputs { Any, Canonical };

// Merges three versions of a products document or of a layout file. Blank bytes stand
// for a side without the file (git's base of a file added on both sides). A merely
// reformatted or reordered side changes nothing; the result is in canonical form.
PRODUCT_EDITOR_EXPORT DefinitionMergeResult MergeDefinitionDocuments(const QByteArray &base, const QByteArray &ours,
                                                                     const QByteArray &theirs,
                                                                     const ConflictMarkers &markers = ConflictMarkers(),
                                                                     MergeInputs inputs = MergeInputs::Any);

} // namespace ProductEditor
