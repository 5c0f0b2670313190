#pragma once

#include <QString>
#include <QStringList>

class GitRepository;

// Makes a git working tree merge definition files with the program's merge-file: the
// driver in the repository's configuration, and the attributes that route each definition
// folder's files to it. Each step prints what it did on stdout and why it failed on stderr.
class MergeDriverSetup
{
public:
    explicit MergeDriverSetup(const GitRepository &repository);

    // Names the driver and has git run `program merge-file ...` for it.
    bool SetDriver(const QString &program) const;

    // Each definition folder's two attribute lines, for every folder among `files` (paths
    // in the working tree) with products/products.json; sorted.
    static QStringList AttributeLines(const QStringList &files);

    // Appends to .gitattributes the lines it does not hold yet.
    bool AddAttributes(const QStringList &lines) const;

private:
    bool SetConfig(const QString &key, const QString &value) const;

    const GitRepository &m_repository; // not owned
};
