#include "store/ParsedDocument.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace ProductEditor {

namespace {

void SetPosition(ParsedDocument &parsed, const QByteArray &bytes, int offset)
{
    const int end = qBound(0, offset, bytes.size());
    const int lineStart = bytes.lastIndexOf('\n', end - 1) + 1;
    parsed.line = bytes.left(end).count('\n') + 1;
    parsed.column = QString::fromUtf8(bytes.constData() + lineStart, end - lineStart).size() + 1;
}

} // namespace

ParsedDocument ParseJsonDocument(const QByteArray &bytes)
{
    ParsedDocument parsed;
    if (bytes.trimmed().isEmpty()) {
        parsed.blank = true;
        return parsed;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        parsed.error = error.errorString();
        SetPosition(parsed, bytes, error.offset);
    } else if (!document.isObject()) {
        parsed.error = QStringLiteral("the document is not a JSON object");
        int first = 0;
        while (first < bytes.size() && QChar::isSpace(uchar(bytes.at(first))))
            ++first;
        SetPosition(parsed, bytes, first);
    } else {
        parsed.object = document.object();
    }
    return parsed;
}

} // namespace ProductEditor
