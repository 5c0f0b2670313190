#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>

#include <optional>

// Reads objects of one repository through a single `git cat-file --batch-command`
// process, so a walk over many revisions starts git once instead of once per object.
class GitObjectReader
{
public:
    struct Object
    {
        QString id;
        QString type; // "blob", "tree", "commit"
        QByteArray content; // empty when only the id was asked for
    };

    // One entry of a tree: its mode ("100644", "40000", ...) and object id.
    struct TreeEntry
    {
        QString mode;
        QString id;
    };

    explicit GitObjectReader(const QString &topLevel);
    ~GitObjectReader();
    GitObjectReader(const GitObjectReader &) = delete;
    GitObjectReader &operator=(const GitObjectReader &) = delete;

    bool Start(QString *error);

    // `name` is anything git names an object by ("REV:path", an id). Nothing when there is
    // no such object; `error` is set only when git itself failed.
    std::optional<Object> Info(const QString &name, QString *error);
    std::optional<Object> Contents(const QString &name, QString *error);

    // The entries of a tree object's content, by name.
    static QMap<QString, TreeEntry> ParseTree(const QByteArray &content, int idBytes);

private:
    std::optional<Object> Ask(const QByteArray &command, const QString &name, bool withContent, QString *error);
    bool ReadExactly(qint64 size, QByteArray *bytes);

    QString m_top;
    QProcess m_process;
};
