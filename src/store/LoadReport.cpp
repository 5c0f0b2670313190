#include "store/LoadReport.h"

#include "store/TextPosition.h"

#include <QFileInfo>
#include <QJsonParseError>

namespace ProductEditor {

namespace {

// A reader returns nothing for a file it cannot read; the file itself says why.
QString UnreadableReason(const QString &file)
{
    const QFileInfo info(file);
    if (!info.exists())
        return QStringLiteral("cannot be read: no such file");
    if (info.isDir())
        return QStringLiteral("is a folder, not a file");
    if (!info.isReadable())
        return QStringLiteral("cannot be read: permission denied");
    return QString();
}

} // namespace

QJsonDocument ParseJsonFile(const QString &file, const QByteArray &bytes, LoadProblem *problem)
{
    problem->file = file;
    if (bytes.isEmpty()) {
        problem->message = UnreadableReason(file);
        if (!problem->message.isEmpty())
            return QJsonDocument();
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::NoError)
        return document;
    const int offset = qBound(0, error.offset, bytes.size());
    const TextPosition position = TextPosition::Of(bytes, offset);
    problem->message = QStringLiteral("not valid JSON");
    problem->parseError = error.errorString();
    problem->offset = offset;
    problem->line = position.line;
    problem->column = position.column;
    return QJsonDocument();
}

} // namespace ProductEditor
