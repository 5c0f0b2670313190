#pragma once

#include <QString>
#include <QVector>

namespace ProductEditor {

// One finding of `check`: what the loader or a save would quietly do to a value.
struct Diagnostic
{
    enum class Severity { Warning, Error };

    QString code; // "PE001"...; DiagnosticRules lists them
    Severity severity = Severity::Warning;
    QString file;
    int line = 1; // 1-based; a finding about a whole file is at 1:1; 0 for a value no file holds yet
    int column = 1;
    QString path; // the JSON path in the file, "$" for the whole document
    QString message;
    // The record the finding is about, where one is identifiable: a window opens it.
    enum class Subject { None, Feature, Product, Extension };
    Subject subject = Subject::None;
    QString subjectId;
    // What a save of the loaded folder dropped: the file held it until then, not now.
    bool droppedBySave = false;
};

using Diagnostics = QVector<Diagnostic>;

} // namespace ProductEditor
