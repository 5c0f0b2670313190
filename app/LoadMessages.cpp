#include "LoadMessages.h"

using namespace ProductEditor;

namespace {

QString ProblemText(const LoadProblem &problem, const QString &lead)
{
    return problem.file + QStringLiteral(": ") + lead + ProblemDescription(problem);
}

} // namespace

QString ProblemDescription(const LoadProblem &problem)
{
    QString text = problem.message;
    if (problem.IsParseError())
        text += QStringLiteral(": %1 at offset %2 (line %3, column %4)")
                    .arg(problem.parseError)
                    .arg(problem.offset)
                    .arg(problem.line)
                    .arg(problem.column);
    return text;
}

QString RefusalMessage(const LoadProblem &problem)
{
    return QStringLiteral("product-editor: ") + ProblemText(problem, QString());
}

QString SkippedLayoutMessage(const LoadProblem &problem)
{
    return QStringLiteral("product-editor: warning: ") + ProblemText(problem, QStringLiteral("skipped, "));
}
