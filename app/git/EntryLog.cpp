#include "git/EntryLog.h"

#include "store/EntryEditCheck.h"

#include <QHash>

#include <optional>
#include <tuple>

using namespace ProductEditor;

namespace {

// One walk's state: which id the entry has at each revision still to visit.
class Walker
{
public:
    Walker(FolderHistory &history, const std::function<void(const QString &)> &warn)
        : m_history(history)
        , m_warn(warn)
    {
    }

    std::optional<FolderHistory::Files> Files(const QString &revision, QString *error)
    {
        const auto known = m_files.constFind(revision);
        if (known != m_files.cend())
            return *known;
        const auto files = m_history.FilesAt(revision, error);
        if (files)
            m_files.insert(revision, *files);
        return files;
    }

    // The entry's changes from `parent` (empty: before the first commit) to `commit`.
    std::optional<RecordChanges> Changes(const EntryChanges &entry, const QString &parent, const QString &commit,
                                         QString *error)
    {
        const auto after = Files(commit, error);
        const auto before = parent.isEmpty() ? std::optional<FolderHistory::Files>(FolderHistory::Files())
                                             : Files(parent, error);
        if (!after || !before)
            return std::nullopt;
        if (*after == *before)
            return RecordChanges();
        const auto untouched = EditsLeaveEntry(entry, *before, *after, error);
        if (!untouched)
            return std::nullopt;
        if (*untouched)
            return RecordChanges();
        const auto newer = Load(commit, *after, error);
        if (!newer)
            return std::nullopt;
        const auto older = Load(parent, *before, error);
        if (!older)
            return std::nullopt;
        return entry.Between(*older, *newer);
    }

private:
    // Whether each file that differs between the two sets surely leaves the entry as it
    // was, which spares loading and comparing the two revisions.
    std::optional<bool> EditsLeaveEntry(const EntryChanges &entry, const FolderHistory::Files &before,
                                        const FolderHistory::Files &after, QString *error)
    {
        if (before.products.isEmpty() || after.products.isEmpty() || before.layouts.keys() != after.layouts.keys())
            return false;
        QVector<std::tuple<QString, QString, bool>> edits;
        if (before.products != after.products)
            edits.append({before.products, after.products, true});
        for (auto it = before.layouts.cbegin(); it != before.layouts.cend(); ++it) {
            if (it.value() != after.layouts.value(it.key()))
                edits.append({it.value(), after.layouts.value(it.key()), false});
        }
        for (const auto &[older, newer, products] : edits) {
            const auto oldBytes = m_history.Blob(older, error);
            const auto newBytes = oldBytes ? m_history.Blob(newer, error) : std::nullopt;
            if (!newBytes)
                return std::nullopt;
            if (!EditLeavesEntry(*oldBytes, *newBytes, products, entry.record, entry.id))
                return false;
        }
        return true;
    }

    std::optional<RecordsSnapshot> Load(const QString &revision, const FolderHistory::Files &files, QString *error)
    {
        QString warning;
        auto records = m_history.Records(files, &warning, error);
        if (records && !warning.isEmpty())
            m_warn(QStringLiteral("%1: %2; read as no records").arg(revision.left(12), warning));
        return records;
    }

    FolderHistory &m_history;
    const std::function<void(const QString &)> &m_warn;
    QHash<QString, FolderHistory::Files> m_files;
};

} // namespace

bool EntryLog::Walk(FolderHistory &history, const Options &options, const std::function<void(const Entry &)> &found,
                    const std::function<void(const QString &)> &warn, QString *error)
{
    const auto commits = history.Commits(!options.allParents, error);
    if (!commits)
        return false;
    Walker walker(history, warn);
    QHash<QString, QString> ids; // commit -> the entry's id there
    if (!commits->isEmpty())
        ids.insert(commits->first().id, options.entry.id);
    int listed = 0;
    for (const FolderHistory::Commit &commit : *commits) {
        if (options.maxCount >= 0 && listed >= options.maxCount)
            break;
        const auto id = ids.constFind(commit.id);
        if (id == ids.cend())
            continue;
        const EntryChanges entry{options.entry.record, *id};
        QStringList parents = commit.parents.isEmpty() ? QStringList(QString()) : commit.parents;
        if (!options.allParents)
            parents = parents.mid(0, 1);
        RecordChanges first;
        bool everyParentDiffers = true;
        for (int i = 0; i < parents.size(); ++i) {
            const auto changes = walker.Changes(entry, parents.at(i), commit.id, error);
            if (!changes)
                return false;
            if (i == 0)
                first = *changes;
            everyParentDiffers = everyParentDiffers && !changes->isEmpty();
            if (!parents.at(i).isEmpty() && !ids.contains(parents.at(i)))
                ids.insert(parents.at(i), entry.IdBefore(*changes));
        }
        if (everyParentDiffers) {
            found({commit, *id, first});
            ++listed;
        }
    }
    return true;
}
