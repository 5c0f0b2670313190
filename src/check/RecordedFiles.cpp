#include "check/RecordedFiles.h"

#include <QDir>
#include <QFileInfo>

namespace ProductEditor {

Reader RecordedFiles::Wrap(Reader reader)
{
    return [this, reader = std::move(reader)](const QString &path) {
        const QByteArray bytes = reader ? reader(path) : QByteArray();
        m_bytes.insert(Key(path), bytes);
        return bytes;
    };
}

Writer RecordedFiles::Wrap(Writer writer)
{
    return [this, writer = std::move(writer)](const QString &path, const QByteArray &bytes) {
        const bool written = writer && writer(path, bytes);
        if (written)
            m_bytes.insert(Key(path), bytes);
        return written;
    };
}

Reader RecordedFiles::Memory() const
{
    return [bytes = m_bytes](const QString &path) { return bytes.value(Key(path)); };
}

QString RecordedFiles::Key(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace ProductEditor
