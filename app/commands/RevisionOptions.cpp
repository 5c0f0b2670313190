#include "commands/RevisionOptions.h"

#include "commands/CommandLine.h"
#include "git/RevisionFolders.h"
#include "output/ProgramMessage.h"

void AddRevisionOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("from"), QStringLiteral("Compare DIR as it is at this git revision."),
                      QStringLiteral("REV")});
    parser.addOption({QStringLiteral("to"),
                      QStringLiteral("Compare with DIR at this revision instead of the working tree."),
                      QStringLiteral("REV")});
}

std::optional<int> UseRevisions(const QString &command, const QCommandLineParser &parser, RevisionFolders &revisions,
                                QStringList *folders, QStringList *sides)
{
    const QString from = parser.value(QStringLiteral("from")), to = parser.value(QStringLiteral("to"));
    if (!parser.isSet(QStringLiteral("from"))) {
        if (parser.isSet(QStringLiteral("to")))
            return UsageError(QStringLiteral("%1: --to needs --from").arg(command));
        return std::nullopt;
    }
    if (folders->size() != 1)
        return UsageError(QStringLiteral("%1: unexpected argument '%2' with --from").arg(command, folders->at(1)));
    QString error;
    if (!revisions.Prepare(folders->at(0), from, to, &error))
        return ProgramMessage::Fail(error);
    const QString folder = folders->at(0);
    *sides = QStringList{QStringLiteral("%1 at %2").arg(folder, from),
                         to.isEmpty() ? folder : QStringLiteral("%1 at %2").arg(folder, to)};
    *folders = QStringList{revisions.leftPath(), revisions.rightPath()};
    return std::nullopt;
}
