#pragma once

#include "git/FolderHistory.h"

#include "store/EntryChanges.h"
#include "store/RecordChange.h"

#include <QString>
#include <QVector>

#include <functional>

// The commits that changed one entry of a definition folder, newest first, with the
// entry's changes in product terms. A commit is compared with its first parent (every
// parent with `allParents`; a merge is then listed only when the entry differs from
// each of its parents, that is when the merge itself changed it). Revisions whose
// folder files have the blob ids of the revision compared with are not loaded. Before
// a commit that renames the entry, its old id is followed.
class EntryLog
{
public:
    struct Entry
    {
        FolderHistory::Commit commit;
        QString id; // the entry's id at this commit
        ProductEditor::RecordChanges changes;
    };

    struct Options
    {
        ProductEditor::EntryChanges entry;
        bool allParents = false;
        int maxCount = -1; // no limit when negative
    };

    // Calls `found` for each commit in turn; false, with the reason, when git fails.
    // `warn` receives one line per revision whose folder could not be loaded.
    static bool Walk(FolderHistory &history, const Options &options, const std::function<void(const Entry &)> &found,
                     const std::function<void(const QString &)> &warn, QString *error);
};
