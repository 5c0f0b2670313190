#include "output/LoadMessages.h"

#include "output/ProgramMessage.h"

#include "check/ProblemDescription.h"

using namespace ProductEditor;

namespace {

QString ProblemText(const LoadProblem &problem, const QString &lead)
{
    return problem.file + QStringLiteral(": ") + lead + ProblemDescription(problem);
}

} // namespace

QString RefusalMessage(const LoadProblem &problem)
{
    return ProgramMessage::Text(ProblemText(problem, QString()));
}

QString SkippedLayoutMessage(const LoadProblem &problem)
{
    return ProgramMessage::Warning(ProblemText(problem, QStringLiteral("skipped, ")));
}

QStringList RecoveryWarnings(const FolderRecovery &recovery)
{
    QStringList warnings;
    for (const QString &note : recovery.notes)
        warnings << ProgramMessage::Warning(note);
    return warnings;
}

QStringList OpenMessages(const LoadReport &report, const std::optional<LoadProblem> &catalogueProblem)
{
    QStringList messages;
    for (const LoadProblem &skipped : report.skippedLayouts)
        messages << SkippedLayoutMessage(skipped);
    if (report.refusal)
        messages << RefusalMessage(*report.refusal);
    if (catalogueProblem)
        messages << RefusalMessage(*catalogueProblem);
    return messages;
}
