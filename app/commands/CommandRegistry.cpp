#include "commands/CommandRegistry.h"

#include "commands/CommandSuggestion.h"

#include <algorithm>

#define PE_COMMAND(command) extern const Command command;
#include "commands/CommandList.h"
#undef PE_COMMAND

const QVector<const Command *> &CommandRegistry::Commands()
{
    static const QVector<const Command *> commands = {
#define PE_COMMAND(command) &command,
#include "commands/CommandList.h"
#undef PE_COMMAND
    };
    return commands;
}

const Command *CommandRegistry::Find(const QString &name)
{
    const auto &commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&name](const Command *command) { return command->name == name; });
    return found == commands.end() ? nullptr : *found;
}

QString CommandRegistry::Suggestion(const QString &word)
{
    // In name order, so that of two names equally near the first in the alphabet wins.
    QStringList names;
    for (const Command *command : Commands())
        names << command->name;
    names.sort();
    return NearestCommand(word, names);
}
