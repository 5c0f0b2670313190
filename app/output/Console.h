#pragma once

#include <QTextStream>

// The program's standard output and error, shared by every command, printer and the window host.
QTextStream &Out();
QTextStream &Err();

// Exit statuses shared by every command and the window.
enum ExitStatus { ExitOk = 0, ExitDifferent = 1, ExitError = 2 };
