#pragma once

#include "TestHelpers.h"

#include <QDirIterator>
#include <QMap>

// Every file of a folder on disk by relative path, hidden ones too, so that a leftover
// temporary file or journal shows in a comparison.
using FolderFiles = QMap<QString, QByteArray>;

inline FolderFiles ReadFolderFiles(const QString &root)
{
    FolderFiles files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.insert(QDir(root).relativeFilePath(path), Read(path));
    }
    return files;
}

// Replaces the folder with exactly these files.
inline void WriteFolderFiles(const QString &root, const FolderFiles &files)
{
    QDir(root).removeRecursively();
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        Write(QDir(root).filePath(it.key()), it.value());
}
