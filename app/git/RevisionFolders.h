#pragma once

#include <QString>
#include <QTemporaryDir>

class GitRepository;

// The two sides of `diff DIR --from REV [--to REV]`: the definition folder DIR as it is
// at each revision, copied out of git into a temporary folder that lives as long as
// this object, or DIR itself for the working tree.
class RevisionFolders
{
public:
    // An empty `to` stands for the working tree. False, with the reason, when DIR is not
    // in a git working tree or a revision does not hold its products/products.json.
    bool Prepare(const QString &folder, const QString &from, const QString &to, QString *error);

    const QString &leftPath() const { return m_left; }
    const QString &rightPath() const { return m_right; }

private:
    bool Export(const GitRepository &repository, const QString &revision, const QString &folder,
                const QString &target, QString *error);

    QTemporaryDir m_dir;
    QString m_left;
    QString m_right;
};
