#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "git/GitRepository.h"
#include "git/MergeDriverSetup.h"
#include "output/ProgramMessage.h"
#include "store/DefinitionFolder.h"

#include <QCoreApplication>
#include <QDir>

using namespace ProductEditor;

namespace {

int RunGitSetup(const QStringList &args, const Reader &)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("git-setup"), args, 0, 1))
        return *status;
    const QStringList positional = parser.positionalArguments();
    QString error;
    const QString folder = positional.isEmpty() ? QDir::currentPath() : positional.first();
    const auto repository = GitRepository::Open(folder, &error);
    if (!repository)
        return ProgramMessage::Fail(error);
    const auto files = repository->Files(&error);
    if (!files)
        return ProgramMessage::Fail(QStringLiteral("%1: %2").arg(repository->topLevel(), error));

    const MergeDriverSetup setup(*repository);
    if (!setup.SetDriver(QCoreApplication::applicationFilePath()))
        return ExitError;
    const QStringList lines = MergeDriverSetup::AttributeLines(*files);
    if (lines.isEmpty()) {
        Out() << repository->topLevel() << ": no definition folder (" << DefinitionFolder::ProductsRelativePath() << ") found\n";
        return ExitOk;
    }
    return setup.AddAttributes(lines) ? ExitOk : ExitError;
}

} // namespace

extern const Command GitSetupCommand{
    QStringLiteral("git-setup"),
    QStringLiteral("  product-editor git-setup [DIR]\n"
                   "      Make the git working tree at DIR merge definition files with merge-file.\n"),
    RunGitSetup};
