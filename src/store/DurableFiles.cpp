#include "store/DurableFiles.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace ProductEditor {

namespace {

bool SystemError(QString *error)
{
    *error = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool Sync(int fd)
{
#ifdef Q_OS_UNIX
    return ::fsync(fd) == 0;
#else
    Q_UNUSED(fd);
    return true;
#endif
}

} // namespace

bool WriteDurably(const QString &path, const QByteArray &bytes, QFileDevice::Permissions permissions,
                  QString *error)
{
    QFile file(path);
    // Unbuffered, so that a write that fails halfway (disk full) fails here with its reason.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        *error = file.errorString();
        return false;
    }
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0) {
            *error = file.errorString();
            file.remove();
            return false;
        }
        done += written;
    }
    if (permissions && !file.setPermissions(permissions)) {
        *error = file.errorString();
        file.remove();
        return false;
    }
    if (!Sync(file.handle())) {
        SystemError(error);
        file.remove();
        return false;
    }
    return true;
}

bool SyncFolder(const QString &folder, QString *error)
{
#ifdef Q_OS_UNIX
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return SystemError(error);
    const bool synced = Sync(fd);
    const int savedErrno = errno;
    ::close(fd);
    errno = savedErrno;
    return synced || SystemError(error);
#else
    Q_UNUSED(folder);
    Q_UNUSED(error);
    return true;
#endif
}

bool ReplaceFile(const QString &from, const QString &to, QString *error)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0
           || SystemError(error);
}

bool RemoveFile(const QString &path, QString *error)
{
    return std::remove(QFile::encodeName(path).constData()) == 0 || errno == ENOENT || SystemError(error);
}

} // namespace ProductEditor
