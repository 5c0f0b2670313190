#include "store/FolderTransaction.h"

#include "store/DurableFiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace ProductEditor {

namespace {

const QString kInterrupted = QStringLiteral("finishing a save that was interrupted");

// Temporary files of saves, in the folder and its sub-folders (a save writes nowhere deeper).
QStringList StagedFiles(const QDir &folder)
{
    QStringList dirs{folder.path()};
    for (const QString &sub : folder.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
        dirs << folder.filePath(sub);
    QStringList found;
    for (const QString &dir : qAsConst(dirs)) {
        for (const QString &name : QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System)) {
            if (SaveJournal::IsStagedName(name))
                found << QDir::cleanPath(QDir(dir).filePath(name));
        }
    }
    return found;
}

QByteArray HashOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return QByteArray();
    return hash.result().toHex();
}

// The entries still to be done. Each staged file must hold what the journal records, or,
// once renamed, its target must; anything else means the files are not as the save left
// them, and nothing may be touched.
bool PendingEntries(const QDir &folder, const QVector<SaveJournalEntry> &entries, QVector<SaveJournalEntry> *pending,
                    QString *problem)
{
    for (const SaveJournalEntry &entry : entries) {
        const QString target = QDir::cleanPath(folder.filePath(entry.target));
        const QString staged = QDir::cleanPath(folder.filePath(entry.staged));
        if (entry.staged.isEmpty()) {
            if (QFileInfo::exists(target))
                *pending << entry;
        } else if (QFileInfo::exists(staged)) {
            if (HashOf(staged) != entry.sha256) {
                *problem = QStringLiteral("%1 does not hold what the save wrote").arg(staged);
                return false;
            }
            *pending << entry;
        } else if (HashOf(target) != entry.sha256) {
            *problem = QStringLiteral("neither %1 nor the temporary file %2 holds what the save wrote").arg(target, staged);
            return false;
        }
    }
    return true;
}

// The journal or its files are not as a save leaves them.
QString Damaged(const QString &problem)
{
    return QStringLiteral("cannot finish or undo the interrupted save it records, so nothing was changed (check "
                          "the files it names, then remove it): ")
           + problem;
}

FolderRecovery Refusal(LoadProblem problem)
{
    FolderRecovery recovery;
    recovery.outcome = FolderRecovery::Outcome::Refused;
    recovery.refusal = std::move(problem);
    return recovery;
}

FolderRecovery Refusal(const QString &journal, const QString &message)
{
    LoadProblem problem;
    problem.file = journal;
    problem.message = message;
    return Refusal(problem);
}

} // namespace

FolderRecovery FolderTransaction::Recover(const QString &path)
{
    const QDir folder(path);
    const QString journal = folder.filePath(SaveJournal::FileName());
    FolderRecovery recovery;
    QStringList leftovers = StagedFiles(folder);
    if (QFileInfo::exists(journal)) {
        QFile file(journal);
        LoadProblem unreadable;
        const QJsonDocument document =
            ParseJsonFile(journal, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray(), &unreadable);
        if (!unreadable.message.isEmpty()) {
            unreadable.message = Damaged(unreadable.message);
            return Refusal(unreadable);
        }
        QString problem;
        const auto entries = SaveJournal::FromJson(document, &problem);
        QVector<SaveJournalEntry> pending;
        if (!entries || !PendingEntries(folder, *entries, &pending, &problem))
            return Refusal(journal, Damaged(problem));
        if (!_Finish(folder.absolutePath(), pending, &problem))
            return Refusal(journal, QStringLiteral("cannot finish the interrupted save it records (the next open "
                                                   "tries again): %1")
                                        .arg(problem));
        for (const SaveJournalEntry &entry : *entries)
            leftovers.removeOne(QDir::cleanPath(folder.filePath(entry.staged)));
        for (const SaveJournalEntry &entry : qAsConst(pending))
            recovery.notes << QStringLiteral("%1: %2, %3")
                                  .arg(QDir::cleanPath(folder.filePath(entry.target)),
                                       entry.staged.isEmpty() ? QStringLiteral("removed") : QStringLiteral("written"),
                                       kInterrupted);
        if (pending.isEmpty())
            recovery.notes << QStringLiteral("%1: removed, the interrupted save it records had put every file in place")
                                  .arg(journal);
        recovery.outcome = FolderRecovery::Outcome::RolledForward;
    }
    for (const QString &leftover : qAsConst(leftovers)) {
        QString reason;
        recovery.notes << (RemoveFile(leftover, &reason)
                               ? QStringLiteral("%1: removed, the temporary file of a save that was interrupted "
                                                "before it changed anything")
                                     .arg(leftover)
                               : QStringLiteral("%1: cannot remove this temporary file of an interrupted save: %2")
                                     .arg(leftover, reason));
        if (recovery.outcome == FolderRecovery::Outcome::Clean)
            recovery.outcome = FolderRecovery::Outcome::RolledBack;
    }
    return recovery;
}

} // namespace ProductEditor
