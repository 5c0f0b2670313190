#include "commands/CommandLine.h"
#include "commands/CommandRegistry.h"
#include "host/EditorHost.h"
#include "host/EditorOptions.h"
#include "host/FileAccess.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

int Run(int &argc, char **argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    // The first positional argument names the command; whatever follows it is the
    // command's to parse. Anything else is the window's, whose parser reports errors.
    QCommandLineParser first;
    AddStandardOptions(first);
    AddEditorOptions(first);
    first.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    first.parse(QStringList(QStringLiteral("product-editor")) + args);
    const QStringList positional = first.positionalArguments();
    const Command *command = positional.isEmpty() ? nullptr : CommandRegistry::Find(positional.first());
    if (!command) {
        // A word that names no folder but nearly names a command was a typing slip.
        const QString word = positional.value(0);
        const QString nearest = CommandRegistry::Suggestion(word);
        if (!word.isEmpty() && !nearest.isEmpty() && !QFileInfo::exists(word))
            return UsageError(QStringLiteral("unknown command '%1' - did you mean %2?").arg(word, nearest));
        return RunEditor(args, argc, argv);
    }

    QCoreApplication app(argc, argv);
    args.removeAt(args.size() - positional.size());
    return command->run(args, &FileAccess::ReadFile);
}

} // namespace

int main(int argc, char **argv)
{
    const int status = Run(argc, argv);
    Out().flush();
    Err().flush();
    return status;
}
