#pragma once

#include "TestHelpers.h"
#include "store/VantixJsonData.h"

#include <QHash>
#include <QTemporaryDir>

// A definition folder whose file contents live in memory. The store lists and
// tests folders on disk, so the folders and empty placeholder files exist in a
// temporary directory; every read and write goes to the hash instead.
class MemoryFolder
{
public:
    MemoryFolder() = default;

    QString root() const { return m_dir.path(); }
    QString path(const QString &relative) const { return QDir(m_dir.path()).filePath(relative); }

    // Adds a file (creating its folder and an empty placeholder on disk).
    void addFile(const QString &relative, const QByteArray &bytes)
    {
        Write(path(relative), QByteArray());
        files.insert(path(relative), bytes);
    }
    void addFolder(const QString &relative) { QDir().mkpath(path(relative)); }

    ProductEditor::Reader reader()
    {
        return [this](const QString &p) { return files.value(QDir::cleanPath(p)); };
    }
    ProductEditor::Writer writer()
    {
        return [this](const QString &p, const QByteArray &bytes) { return written.insert(QDir::cleanPath(p), bytes) != written.end(); };
    }

    QHash<QString, QByteArray> files;   // full path -> content served by the reader
    QHash<QString, QByteArray> written; // full path -> content the writer received

private:
    QTemporaryDir m_dir;
};
