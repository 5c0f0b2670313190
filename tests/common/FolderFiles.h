#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>

// Every file of a folder on disk by relative path, hidden ones too, so that a leftover
// temporary file or journal shows in a comparison.
using FolderFiles = QMap<QString, QByteArray>;

inline FolderFiles ReadFolderFiles(const QString &root)
{
    FolderFiles files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        file.open(QIODevice::ReadOnly);
        files.insert(QDir(root).relativeFilePath(file.fileName()), file.readAll());
    }
    return files;
}

// Replaces the folder with exactly these files.
inline void WriteFolderFiles(const QString &root, const FolderFiles &files)
{
    QDir(root).removeRecursively();
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QString path = QDir(root).filePath(it.key());
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(it.value());
    }
}
