#pragma once

#include "TestHelpers.h"

#include <QDir>
#include <QString>
#include <QStringList>

// Git as the tests run it: none of the user's or the system's configuration takes part
// (HOME is `home`), and a new repository has a branch "main" and an author.
inline void IsolateGit(const QString &home)
{
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_CONFIG_HOME", home.toUtf8());
    qputenv("GIT_CONFIG_NOSYSTEM", "1");
    for (const char *name : {"GIT_DIR", "GIT_WORK_TREE", "GIT_INDEX_FILE", "GIT_CONFIG_GLOBAL"})
        qunsetenv(name);
}

// False when git refused to make the repository.
inline bool InitRepository(const QString &repo)
{
    QDir().mkpath(repo);
    return Start(QStringLiteral("git"), {"init", "-q", "-b", "main"}, repo).status == 0
           && Start(QStringLiteral("git"), {"config", "user.name", "Tester"}, repo).status == 0
           && Start(QStringLiteral("git"), {"config", "user.email", "tester@example.org"}, repo).status == 0;
}
