#include "check/ScannedDocument.h"

namespace ProductEditor {

Diagnostic ScannedDocument::At(int node, const char *code, const QString &message) const
{
    Diagnostic diagnostic;
    diagnostic.code = QString::fromLatin1(code);
    diagnostic.file = file;
    diagnostic.line = qMax(1, json.line(node));
    diagnostic.column = qMax(1, json.column(node));
    diagnostic.path = json.path(node);
    if (diagnostic.path.isEmpty())
        diagnostic.path = QStringLiteral("$");
    diagnostic.message = message;
    return diagnostic;
}

QString ScannedDocument::ValueText(int node) const
{
    constexpr int limit = 40;
    const QByteArray text = json.source(node, limit + 1);
    return text.size() > limit ? QString::fromUtf8(text.left(limit)) + QStringLiteral("...")
                               : QString::fromUtf8(text);
}

} // namespace ProductEditor
