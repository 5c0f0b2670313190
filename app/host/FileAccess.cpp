#include "host/FileAccess.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

FileAccess::FileAccess(Mode mode)
    : m_mode(mode)
{
}

ProductEditor::Reader FileAccess::reader()
{
    return [](const QString &path) { return ReadFile(path); };
}

ProductEditor::Writer FileAccess::writer()
{
    return [this](const QString &path, const QByteArray &bytes) {
        if (m_mode == Mode::CompareOnly) {
            QFile existing(path);
            if (!existing.open(QIODevice::ReadOnly) || existing.readAll() != bytes)
                m_changed << path;
            return true;
        }
        QString error;
        if (m_save ? !m_save->Stage(path, bytes, &error) : !WriteFileAtomically(path, bytes, &error)) {
            m_saveFailed = true;
            m_errors << QStringLiteral("%1: %2").arg(path, error);
            return false;
        }
        return true;
    };
}

void FileAccess::BeginSave(const QString &folder)
{
    m_save = std::make_unique<ProductEditor::FolderTransaction>(folder);
    m_saveFailed = false;
}

bool FileAccess::FinishSave()
{
    // Dropping the transaction discards what a failed save staged.
    const std::unique_ptr<ProductEditor::FolderTransaction> save = std::move(m_save);
    if (!save || m_saveFailed)
        return !m_saveFailed;
    QString error;
    if (save->Commit(&error))
        return true;
    m_errors << error;
    return false;
}

QByteArray FileAccess::ReadFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

bool FileAccess::WriteFileAtomically(const QString &path, const QByteArray &bytes, QString *error)
{
    if (QFileInfo(path).isDir()) {
        if (error)
            *error = QStringLiteral("a directory stands where the file should be");
        return false;
    }
    // QSaveFile writes to a temporary file in the same folder and renames it
    // over the target on commit, so the old file survives any failure.
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    // Unbuffered: commit() does not check its final flush, so a write that fails
    // there (disk full) would replace the target with a truncated file. A short
    // write is retried so the failure comes with its reason.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0) {
            if (error)
                *error = file.errorString();
            file.cancelWriting();
            return false;
        }
        done += written;
    }
    if (!file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}
