#include "CommandLine.h"
#include "CommandSuggestion.h"
#include "Commands.h"
#include "EditorHost.h"
#include "EditorOptions.h"
#include "FileAccess.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

using Command = int (*)(const QStringList &, const ProductEditor::Reader &);

const QMap<QString, Command> &CommandTable()
{
    static const QMap<QString, Command> table = {
        {QStringLiteral("check"), RunCheck},
        {QStringLiteral("normalize"), RunNormalize},
        {QStringLiteral("diff"), RunDiff},
        {QStringLiteral("compare-products"), RunCompareProducts},
        {QStringLiteral("query"), RunQuery},
        {QStringLiteral("merge-file"), RunMergeFile},
        {QStringLiteral("git-setup"), RunGitSetup},
        {QStringLiteral("resolve"), RunResolve},
        {QStringLiteral("merge"), RunMergeFolders},
    };
    return table;
}

Command FindCommand(const QString &name)
{
    return CommandTable().value(name, nullptr);
}

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
    const Command command = positional.isEmpty() ? nullptr : FindCommand(positional.first());
    if (!command) {
        // A word that names no folder but nearly names a command was a typing slip.
        const QString word = positional.value(0);
        const QString nearest = NearestCommand(word, CommandTable().keys());
        if (!word.isEmpty() && !nearest.isEmpty() && !QFileInfo::exists(word))
            return UsageError(QStringLiteral("unknown command '%1' - did you mean %2?").arg(word, nearest));
        return RunEditor(args, argc, argv);
    }

    QCoreApplication app(argc, argv);
    args.removeAt(args.size() - positional.size());
    return command(args, &FileAccess::ReadFile);
}

} // namespace

int main(int argc, char **argv)
{
    const int status = Run(argc, argv);
    Out().flush();
    Err().flush();
    return status;
}
