#pragma once

#include "ProductEditorExport.h"
#include "store/LoadReport.h"
#include "store/SaveJournal.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace ProductEditor {

// What opening a folder did about a save of it that was interrupted.
struct FolderRecovery
{
    enum class Outcome { Clean, RolledForward, RolledBack, Refused };
    Outcome outcome = Outcome::Clean;
    QStringList notes;                   // "FILE: what was done and why", one per file written or removed
    std::optional<LoadProblem> refusal; // Refused: the journal, and why the save can be neither finished nor undone
};

// An all-or-nothing save of several files of one definition folder. Stage writes each new
// file completely to a temporary file beside its target; Commit records them in a journal
// in the folder, replaces the targets and removes the journal. A save stopped anywhere (a
// kill, a power loss) is finished or undone by RecoverFolder when the folder is next opened,
// so the folder is never a mix of old and new files.
class PRODUCT_EDITOR_EXPORT FolderTransaction
{
public:
    explicit FolderTransaction(QString folder);
    ~FolderTransaction(); // discards what was staged and not committed
    FolderTransaction(const FolderTransaction &) = delete;
    FolderTransaction &operator=(const FolderTransaction &) = delete;

    const QString &Folder() const { return m_folder; }
    int StagedCount() const { return m_entries.size(); }

    // Writes and syncs `bytes` beside `path`; the old file stays until Commit. A symbolic
    // link is followed, so the file it names is replaced.
    bool Stage(const QString &path, const QByteArray &bytes, QString *error);
    // Commit removes `path`.
    void StageRemoval(const QString &path);

    // Replaces every staged target. On a failure before the journal is in place nothing is
    // changed; after it, the next open finishes the save. `error` reads "FILE: REASON".
    bool Commit(QString *error);
    // Removes the staged files; the folder stays as it was.
    void Discard();

    // Run before a folder is read. A save whose journal is in place is finished; the
    // temporary files of one that stopped before are removed. A journal that cannot be read
    // or names files that are not as the save left them refuses the folder and changes nothing.
    static FolderRecovery Recover(const QString &folder);

private:
    // Replaces the targets of a save whose journal is in place, then removes the journal.
    static bool _Finish(const QString &folder, const QVector<SaveJournalEntry> &entries, QString *error);
    static bool _SyncFolders(const QString &folder, const QVector<SaveJournalEntry> &entries, bool staged,
                             QString *error);

    void _Forget(const QString &target);
    QString _Absolute(const QString &relative) const;
    bool _WriteJournal(QString *error);

    QString m_folder;
    QVector<SaveJournalEntry> m_entries; // relative to m_folder
};

} // namespace ProductEditor
