#include "output/ChangesPrinter.h"

#include "output/ProgramMessage.h"

#include "store/ChangeJson.h"
#include "store/ChangeMarkdown.h"
#include "store/ChangeText.h"

#include <QJsonDocument>

using namespace ProductEditor;

bool ParseChangesFormat(const QString &text, ChangesFormat *format)
{
    const QStringList names{QStringLiteral("text"), QStringLiteral("markdown"), QStringLiteral("json")};
    const int index = names.indexOf(text);
    if (index < 0) {
        ProgramMessage::Fail(QStringLiteral("unknown format '%1' (use text, markdown or json)").arg(text));
        return false;
    }
    *format = ChangesFormat(index);
    return true;
}

void PrintChanges(QTextStream &out, const RecordChanges &changes, ChangesFormat format, const QString &left,
                  const QString &right)
{
    switch (format) {
    case ChangesFormat::Text: out << ChangesText(changes); break;
    case ChangesFormat::Markdown: out << ChangesMarkdown(changes, left, right); break;
    case ChangesFormat::Json:
        out << QJsonDocument(ChangesReportJson(changes, left, right)).toJson(QJsonDocument::Indented);
        break;
    }
    out.flush();
}
