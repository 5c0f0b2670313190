#include "check/ProblemDescription.h"

namespace ProductEditor {

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

} // namespace ProductEditor
