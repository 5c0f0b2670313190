#pragma once

#include <QString>
#include <QVector>

// The codes `check` reports, each with a short name and what it means; the SARIF
// output lists them as rules.
struct DiagnosticRule
{
    const char *code;
    const char *name;
    const char *description;
};

const QVector<DiagnosticRule> &DiagnosticRules();
