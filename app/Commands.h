#pragma once

#include <QStringList>

// Each command of the command-line mode takes the arguments that follow its
// name and returns the process exit status.
int RunCheck(const QStringList &args);
int RunNormalize(const QStringList &args);
int RunDiff(const QStringList &args);
int RunCompareProducts(const QStringList &args);
int RunQuery(const QStringList &args);

// The desktop program: opens the editor window (or renders screenshots).
int RunEditor(int &argc, char **argv);

QString UsageText();
