#include "git/RevisionFolders.h"

#include "git/GitRepository.h"
#include "host/FileAccess.h"

#include <QDir>
#include <QFileInfo>

bool RevisionFolders::Prepare(const QString &folder, const QString &from, const QString &to, QString *error)
{
    if (!m_dir.isValid()) {
        *error = QStringLiteral("cannot create a temporary folder: %1").arg(m_dir.errorString());
        return false;
    }
    const auto repository = GitRepository::Open(QFileInfo(folder).isDir() ? folder : QDir::currentPath(), error);
    if (!repository)
        return false;
    const QString relative = repository->RelativePath(folder);
    if (relative.startsWith(QLatin1String("../"))) {
        *error = QStringLiteral("%1: not inside the working tree %2").arg(folder, repository->topLevel());
        return false;
    }
    m_left = QDir(m_dir.path()).filePath(QStringLiteral("from/") + relative);
    if (!Export(*repository, from, relative, m_left, error))
        return false;
    if (to.isEmpty()) {
        m_right = folder;
        return true;
    }
    m_right = QDir(m_dir.path()).filePath(QStringLiteral("to/") + relative);
    return Export(*repository, to, relative, m_right, error);
}

bool RevisionFolders::Export(const GitRepository &repository, const QString &revision, const QString &folder,
                             const QString &target, QString *error)
{
    const QString prefix = folder.isEmpty() ? QString() : folder + QLatin1Char('/');
    for (const QString &sub : {QStringLiteral("products"), QStringLiteral("layouts")}) {
        const auto files = repository.FilesAt(revision, prefix + sub, error);
        if (!files)
            return false;
        if (sub == QLatin1String("products") && !files->contains(QStringLiteral("products.json"))) {
            *error = QStringLiteral("%1: no products/products.json at %2")
                         .arg(folder.isEmpty() ? QStringLiteral(".") : folder, revision);
            return false;
        }
        const QDir dir(QDir(target).filePath(sub));
        if (!QDir().mkpath(dir.path())) {
            *error = QStringLiteral("%1: cannot create the folder").arg(dir.path());
            return false;
        }
        for (auto it = files->cbegin(); it != files->cend(); ++it) {
            if (sub == QLatin1String("products") && it.key() != QLatin1String("products.json"))
                continue;
            const auto blob = repository.Blob(it.value(), error);
            if (!blob)
                return false;
            QString writeError;
            if (!FileAccess::WriteFileAtomically(dir.filePath(it.key()), *blob, &writeError)) {
                *error = QStringLiteral("cannot write %1: %2").arg(dir.filePath(it.key()), writeError);
                return false;
            }
        }
    }
    return true;
}
