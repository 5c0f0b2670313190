#pragma once

#include "ProductEditorExport.h"

#include <QString>
#include <QVector>

namespace ProductEditor {

// The codes `check` reports, each with a short name and what it means; the SARIF
// output lists them as rules.
struct DiagnosticRule
{
    const char *code;
    const char *name;
    const char *description;
};

PRODUCT_EDITOR_EXPORT const QVector<DiagnosticRule> &DiagnosticRules();

} // namespace ProductEditor
