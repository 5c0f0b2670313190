#include "check/SaveLosses.h"

#include <QStringList>

#include <algorithm>

namespace ProductEditor {

namespace {

int CountOf(const Diagnostics &problems, const char *code)
{
    return int(std::count_if(problems.cbegin(), problems.cend(), [code](const Diagnostic &problem) {
        return problem.code == QLatin1String(code) && IsSaveLoss(problem);
    }));
}

QString Counted(int count, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

} // namespace

bool IsSaveLoss(const Diagnostic &problem)
{
    return !problem.droppedBySave && problem.line > 0
           && (problem.code == QLatin1String("PE009") || problem.code == QLatin1String("PE010")
               || problem.code == QLatin1String("PE015"));
}

QString SaveLosses(const Diagnostics &problems)
{
    const int unknown = CountOf(problems, "PE009");
    const int repeated = CountOf(problems, "PE015");
    const int wrongType = CountOf(problems, "PE010");
    QStringList dropped;
    if (unknown > 0)
        dropped << Counted(unknown, "unknown key", "unknown keys");
    if (repeated > 0)
        dropped << Counted(repeated, "repeated key", "repeated keys");
    QStringList sentence;
    if (!dropped.isEmpty())
        sentence << dropped.join(QLatin1String(" and "))
                        + (unknown + repeated == 1 ? QLatin1String(" was dropped") : QLatin1String(" were dropped"));
    if (wrongType > 0)
        sentence << Counted(wrongType, "value of the wrong type was replaced by its default",
                            "values of the wrong type were replaced by their defaults");
    return sentence.join(QLatin1String(", "));
}

} // namespace ProductEditor
