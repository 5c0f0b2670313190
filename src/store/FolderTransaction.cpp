#include "store/FolderTransaction.h"

#include "store/DurableFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <utility>

namespace ProductEditor {

FolderTransaction::FolderTransaction(QString folder)
    : m_folder(QDir(folder).absolutePath())
{
}

FolderTransaction::~FolderTransaction()
{
    Discard();
}

bool FolderTransaction::Stage(const QString &path, const QByteArray &bytes, QString *error)
{
    QFileInfo target(path);
    // A link is replaced by the file it points to, as a write through the link would.
    for (int hops = 0; target.isSymLink() && hops < 32; ++hops)
        target.setFile(target.symLinkTarget());
    if (target.isDir()) {
        *error = QStringLiteral("a directory stands where the file should be");
        return false;
    }
    const QString staged = target.dir().filePath(SaveJournal::StagedName(target.fileName()));
    const QFileDevice::Permissions permissions = target.exists() ? target.permissions() : QFileDevice::Permissions();
    if (!WriteDurably(staged, bytes, permissions, error))
        return false;
    const QDir folder(m_folder);
    _Forget(folder.relativeFilePath(target.absoluteFilePath()));
    m_entries << SaveJournalEntry{folder.relativeFilePath(target.absoluteFilePath()), folder.relativeFilePath(staged),
                                  SaveJournal::Hash(bytes)};
    return true;
}

void FolderTransaction::StageRemoval(const QString &path)
{
    _Forget(QDir(m_folder).relativeFilePath(path));
    m_entries << SaveJournalEntry{QDir(m_folder).relativeFilePath(path), QString(), QByteArray()};
}

bool FolderTransaction::Commit(QString *error)
{
    if (m_entries.isEmpty())
        return true;
    if (!_SyncFolders(m_folder, m_entries, true, error) || !_WriteJournal(error)) {
        Discard();
        return false;
    }
    // From here the journal holds the save: whatever stops it, the next open finishes it.
    return _Finish(m_folder, std::exchange(m_entries, {}), error);
}

bool FolderTransaction::_Finish(const QString &folder, const QVector<SaveJournalEntry> &entries, QString *error)
{
    const QDir dir(folder);
    for (const SaveJournalEntry &entry : entries) {
        const QString target = QDir::cleanPath(dir.filePath(entry.target));
        QString reason;
        const bool done = entry.staged.isEmpty()
                              ? RemoveFile(target, &reason)
                              : ReplaceFile(QDir::cleanPath(dir.filePath(entry.staged)), target, &reason);
        if (!done) {
            *error = QStringLiteral("%1: %2").arg(target, reason);
            return false;
        }
    }
    if (!_SyncFolders(folder, entries, false, error))
        return false;
    const QString journal = dir.filePath(SaveJournal::FileName());
    QString reason;
    if (RemoveFile(journal, &reason) && SyncFolder(folder, &reason))
        return true;
    *error = QStringLiteral("%1: %2").arg(journal, reason);
    return false;
}

void FolderTransaction::Discard()
{
    for (const SaveJournalEntry &entry : qAsConst(m_entries)) {
        if (!entry.staged.isEmpty())
            QFile::remove(_Absolute(entry.staged));
    }
    m_entries.clear();
}

// A file staged twice is written once, with the later content.
void FolderTransaction::_Forget(const QString &target)
{
    for (int i = m_entries.size() - 1; i >= 0; --i) {
        if (m_entries.at(i).target != target)
            continue;
        if (!m_entries.at(i).staged.isEmpty())
            QFile::remove(_Absolute(m_entries.at(i).staged));
        m_entries.remove(i);
    }
}

QString FolderTransaction::_Absolute(const QString &relative) const
{
    return QDir::cleanPath(QDir(m_folder).filePath(relative));
}

// The journal is written whole under a temporary name and renamed into place, so it is
// either absent or complete.
bool FolderTransaction::_WriteJournal(QString *error)
{
    const QDir folder(m_folder);
    const QString journal = folder.filePath(SaveJournal::FileName());
    // The journal of a save that was interrupted stays until an open finishes that save.
    if (QFileInfo::exists(journal)) {
        *error = QStringLiteral("%1: a save that was interrupted is not finished; open the folder first").arg(journal);
        return false;
    }
    const QString staged = folder.filePath(SaveJournal::StagedName(SaveJournal::FileName()));
    QString reason;
    bool written = WriteDurably(staged, SaveJournal::ToJson(m_entries), QFileDevice::Permissions(), &reason);
    if (written && !ReplaceFile(staged, journal, &reason)) {
        QFile::remove(staged);
        written = false;
    } else if (written && !SyncFolder(m_folder, &reason)) {
        QFile::remove(journal);
        written = false;
    }
    if (!written)
        *error = QStringLiteral("%1: %2").arg(journal, reason);
    return written;
}

// The folders of the staged files (their names must be on the disk before the journal that
// names them is), or of the targets.
bool FolderTransaction::_SyncFolders(const QString &folder, const QVector<SaveJournalEntry> &entries, bool staged,
                                     QString *error)
{
    QSet<QString> folders;
    for (const SaveJournalEntry &entry : entries) {
        const QString file = staged && !entry.staged.isEmpty() ? entry.staged : entry.target;
        folders.insert(QFileInfo(QDir(folder).filePath(file)).absolutePath());
    }
    for (const QString &synced : qAsConst(folders)) {
        QString reason;
        if (!SyncFolder(synced, &reason)) {
            *error = QStringLiteral("%1: %2").arg(synced, reason);
            return false;
        }
    }
    return true;
}

} // namespace ProductEditor
