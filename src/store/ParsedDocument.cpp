#include "store/ParsedDocument.h"

#include "store/TextPosition.h"

#include <QJsonDocument>
#include <QJsonParseError>

#include <algorithm>
#include <cstring>

namespace ProductEditor {

namespace {

void SetPosition(ParsedDocument &parsed, const QByteArray &bytes, int offset)
{
    const TextPosition position = TextPosition::Of(bytes, offset);
    parsed.line = position.line;
    parsed.column = position.column;
}

} // namespace

ParsedDocument ParseJsonDocument(const QByteArray &bytes)
{
    ParsedDocument parsed;
    // Looks only as far as the first character that is not white space; a copy of a
    // large document to trim it would cost as much as reading it.
    if (std::all_of(bytes.cbegin(), bytes.cend(), [](char c) { return c != '\0' && std::strchr(" \t\n\v\f\r", c); })) {
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
