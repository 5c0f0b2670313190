#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "commands/MergeReport.h"
#include "git/GitRepository.h"
#include "host/FileAccess.h"
#include "output/ProgramMessage.h"
#include "store/DefinitionFolder.h"

#include <QDir>

#include <climits>

using namespace ProductEditor;

namespace {

enum class Outcome { Merged, Conflicted, Failed };

Outcome Resolve(const GitRepository &repository, const GitRepository::Unmerged &file)
{
    if (!file.stages.contains(2) || !file.stages.contains(3)) {
        Err() << file.path << ": deleted on one side; resolve it by hand\n";
        return Outcome::Conflicted;
    }
    QByteArray sides[3];
    QStringList names;
    for (int stage = 1; stage <= 3; ++stage) {
        names << QStringLiteral(":%1:%2").arg(stage).arg(file.path);
        if (!file.stages.contains(stage))
            continue;
        QString error;
        const auto blob = repository.Blob(file.stages.value(stage), &error);
        if (!blob) {
            ProgramMessage::Fail(QStringLiteral("%1: %2").arg(names.last(), error));
            return Outcome::Failed;
        }
        sides[stage - 1] = *blob;
    }
    const ConflictMarkers markers{QStringLiteral("ours"), QStringLiteral("base"), QStringLiteral("theirs"), 7};
    const DefinitionMergeResult result = MergeDefinitionDocuments(sides[0], sides[1], sides[2], markers);
    if (!result.ok()) {
        ProgramMessage::Fail(MergeInputError(result.error, names));
        return Outcome::Failed;
    }
    QString error;
    if (!FileAccess::WriteFileAtomically(QDir(repository.topLevel()).filePath(file.path), result.bytes, &error)) {
        ProgramMessage::Fail(QStringLiteral("cannot write %1: %2").arg(file.path, error));
        return Outcome::Failed;
    }
    if (result.clean())
        return Outcome::Merged;
    PrintConflicts(file.path, result.conflicts);
    return Outcome::Conflicted;
}

int RunResolve(const QStringList &args, const Reader &)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("resolve"), args, 0, INT_MAX))
        return *status;
    QString error;
    const auto repository = GitRepository::Open(QDir::currentPath(), &error);
    if (!repository)
        return ProgramMessage::Fail(error);
    QStringList paths;
    for (const QString &path : parser.positionalArguments()) {
        const QString relative = repository->RelativePath(path);
        paths << (relative.isEmpty() ? QStringLiteral(".") : relative);
    }
    const auto unmerged = repository->UnmergedFiles(paths, &error);
    if (!unmerged)
        return ProgramMessage::Fail(error);

    QStringList merged;
    int conflicted = 0;
    int failed = 0;
    for (const GitRepository::Unmerged &file : *unmerged) {
        if (!DefinitionFolder::IsDocumentPath(file.path))
            continue;
        const Outcome outcome = Resolve(*repository, file);
        if (outcome == Outcome::Merged)
            merged << file.path;
        conflicted += outcome == Outcome::Conflicted;
        failed += outcome == Outcome::Failed;
    }
    if (!merged.isEmpty()) {
        const auto added = repository->Run(QStringList{QStringLiteral("add"), QStringLiteral("--")} + merged);
        if (!added.ok)
            return ProgramMessage::Fail(added.error);
    }
    for (const QString &path : merged)
        Out() << "resolved " << path << "\n";
    if (merged.isEmpty() && conflicted == 0 && failed == 0)
        Out() << "no conflicted definition files\n";
    return failed ? ExitError : conflicted ? ExitDifferent : ExitOk;
}

} // namespace

extern const Command ResolveCommand{
    QStringLiteral("resolve"),
    QStringLiteral("  product-editor resolve [PATH...]\n"
                   "      Merge the conflicted definition files of the git index again, add\n"
                   "      the clean ones and list the others (exit 1 when any remain).\n"),
    RunResolve};
