#include "git/GitObjectReader.h"

GitObjectReader::GitObjectReader(const QString &topLevel)
    : m_top(topLevel)
{
}

GitObjectReader::~GitObjectReader()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(5000))
            m_process.kill();
    }
}

bool GitObjectReader::Start(QString *error)
{
    m_process.setWorkingDirectory(m_top);
    m_process.start(QStringLiteral("git"), {QStringLiteral("cat-file"), QStringLiteral("--batch-command")});
    if (!m_process.waitForStarted(-1)) {
        *error = QStringLiteral("cannot run git: %1").arg(m_process.errorString());
        return false;
    }
    return true;
}

std::optional<GitObjectReader::Object> GitObjectReader::Info(const QString &name, QString *error)
{
    return Ask("info ", name, false, error);
}

std::optional<GitObjectReader::Object> GitObjectReader::Contents(const QString &name, QString *error)
{
    return Ask("contents ", name, true, error);
}

bool GitObjectReader::ReadExactly(qint64 size, QByteArray *bytes)
{
    bytes->clear();
    bytes->reserve(int(size));
    while (bytes->size() < size) {
        if (m_process.bytesAvailable() == 0 && !m_process.waitForReadyRead(-1))
            return false;
        bytes->append(m_process.read(size - bytes->size()));
    }
    return true;
}

std::optional<GitObjectReader::Object> GitObjectReader::Ask(const QByteArray &command, const QString &name,
                                                            bool withContent, QString *error)
{
    // The batch reads one request per line, so a name with a line break names nothing.
    if (name.contains(QLatin1Char('\n')))
        return std::nullopt;
    m_process.write(command + name.toUtf8() + '\n');
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(-1)) {
            const QString message = QString::fromLocal8Bit(m_process.readAllStandardError()).trimmed();
            *error = message.isEmpty() ? QStringLiteral("git cat-file stopped") : message;
            return std::nullopt;
        }
    }
    // "ID TYPE SIZE", or "NAME missing" / "NAME ambiguous".
    const QList<QByteArray> header = m_process.readLine().trimmed().split(' ');
    bool sized = false;
    if (header.size() != 3 || header.at(2).toLongLong(&sized) < 0 || !sized)
        return std::nullopt;
    Object object{QString::fromLatin1(header.at(0)), QString::fromLatin1(header.at(1)), {}};
    if (withContent) {
        QByteArray newline;
        if (!ReadExactly(header.at(2).toLongLong(), &object.content) || !ReadExactly(1, &newline)) {
            *error = QStringLiteral("git cat-file stopped while reading %1").arg(name);
            return std::nullopt;
        }
    }
    return object;
}

QMap<QString, GitObjectReader::TreeEntry> GitObjectReader::ParseTree(const QByteArray &content, int idBytes)
{
    // Each entry: "MODE NAME\0" and the id's raw bytes.
    QMap<QString, TreeEntry> entries;
    int at = 0;
    while (at < content.size()) {
        const int space = content.indexOf(' ', at);
        const int nul = content.indexOf('\0', at);
        if (space < 0 || nul < space || nul + 1 + idBytes > content.size())
            break;
        entries.insert(QString::fromUtf8(content.mid(space + 1, nul - space - 1)),
                       {QString::fromLatin1(content.mid(at, space - at)),
                        QString::fromLatin1(content.mid(nul + 1, idBytes).toHex())});
        at = nul + 1 + idBytes;
    }
    return entries;
}
