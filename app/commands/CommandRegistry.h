#pragma once

#include "commands/Command.h"

#include <QString>
#include <QVector>

// The commands of the command-line mode, from which the program dispatches, the usage
// text lists them, and a mistyped name is suggested.
class CommandRegistry
{
public:
    // Every command, in the order the usage text lists them.
    static const QVector<const Command *> &Commands();

    // The command named `name`; null when none is.
    static const Command *Find(const QString &name);

    // The command `word` most likely meant, by NearestCommand; empty when none is near.
    static QString Suggestion(const QString &word);
};
