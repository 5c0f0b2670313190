#include "git/RevisionFolders.h"

#include "git/GitRepository.h"
#include "host/FileAccess.h"
#include "store/DefinitionFolder.h"

#include <QDir>
#include <QFileInfo>

using ProductEditor::DefinitionFolder;

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
    const QString products = DefinitionFolder::ProductsFolderName();
    for (const QString &sub : {products, DefinitionFolder::LayoutsFolderName()}) {
        const auto files = repository.FilesAt(revision, prefix + sub, error);
        if (!files)
            return false;
        if (sub == products && !files->contains(DefinitionFolder::ProductsFileName())) {
            *error = QStringLiteral("%1: no %2 at %3")
                         .arg(folder.isEmpty() ? QStringLiteral(".") : folder,
                              DefinitionFolder::ProductsRelativePath(), revision);
            return false;
        }
        const QDir dir(QDir(target).filePath(sub));
        if (!QDir().mkpath(dir.path())) {
            *error = QStringLiteral("%1: cannot create the folder").arg(dir.path());
            return false;
        }
        for (auto it = files->cbegin(); it != files->cend(); ++it) {
            if (sub == products && it.key() != DefinitionFolder::ProductsFileName())
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
