#include "output/ProgramMessage.h"

#include "output/Console.h"

namespace {

const QString kLead = QStringLiteral("product-editor: ");

} // namespace

QString ProgramMessage::Text(const QString &message)
{
    return kLead + message;
}

QString ProgramMessage::Warning(const QString &message)
{
    return Text(QStringLiteral("warning: ") + message);
}

QString ProgramMessage::WithoutProgram(const QString &line)
{
    return line.startsWith(kLead) ? line.mid(kLead.size()) : line;
}

int ProgramMessage::Fail(const QString &message)
{
    Err() << Text(message) << "\n";
    return ExitError;
}

void ProgramMessage::Print(const QStringList &lines)
{
    for (const QString &line : lines)
        Err() << line << "\n";
}
