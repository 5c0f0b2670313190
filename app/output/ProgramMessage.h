#pragma once

#include <QString>
#include <QStringList>

// The one wording of the program's own lines: "product-editor: MESSAGE" for errors and
// notices, "product-editor: warning: MESSAGE" for warnings. Every command, printer and
// the window host words and prints its errors here.
class ProgramMessage
{
public:
    static QString Text(const QString &message);
    static QString Warning(const QString &message);

    // A line worded by Text without the program's name, as the window's status bar shows it.
    static QString WithoutProgram(const QString &line);

    // Prints Text(message) on stderr; returns ExitError.
    static int Fail(const QString &message);

    // Prints lines worded here (or by LoadMessages), one a line, on stderr.
    static void Print(const QStringList &lines);
};
