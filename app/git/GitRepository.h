#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

// One git working tree, driven through the git program. Every path it takes or
// returns is relative to the top of the working tree unless said otherwise.
class GitRepository
{
public:
    struct Output
    {
        bool ok = false; // started and exited with 0
        QByteArray out;
        QString error; // git's own message, or why it could not run
    };

    // One conflicted file of the index: the blob of each stage it has (1 base, 2 ours, 3 theirs).
    struct Unmerged
    {
        QString path;
        QMap<int, QString> stages;
    };

    // The working tree that holds `folder` (absolute or relative to the current folder);
    // nothing, with the reason in `error`, when there is none or git cannot run.
    static std::optional<GitRepository> Open(const QString &folder, QString *error);

    const QString &topLevel() const { return m_top; }
    // `path` relative to the top; `path` may be absolute or relative to the current folder.
    QString RelativePath(const QString &path) const;

    Output Run(const QStringList &args) const;
    std::optional<QByteArray> Blob(const QString &object, QString *error) const;
    // Unmerged files under the given paths (all when empty), in path order.
    std::optional<QList<Unmerged>> UnmergedFiles(const QStringList &paths, QString *error) const;
    // Tracked and untracked, not ignored files of the working tree.
    std::optional<QStringList> Files(QString *error) const;
    // The files directly in `folder` at `revision`, by name, with their blob ids.
    std::optional<QMap<QString, QString>> FilesAt(const QString &revision, const QString &folder,
                                                  QString *error) const;

private:
    explicit GitRepository(QString top);

    QString m_top;
};
