#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "commands/MergeReport.h"
#include "host/FileAccess.h"
#include "output/ProgramMessage.h"

using namespace ProductEditor;

namespace {

void AddMergeFileOptions(QCommandLineParser &parser)
{
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")},
                      QStringLiteral("Write the result here instead of OURS."), QStringLiteral("OUT")});
    parser.addOption({QStringLiteral("L"), QStringLiteral("Conflict labels: ours, base, theirs, in this order."),
                      QStringLiteral("LABEL")});
    parser.addOption({QStringLiteral("marker-size"), QStringLiteral("Length of the conflict markers."),
                      QStringLiteral("N"), QStringLiteral("7")});
    parser.addOption({QStringLiteral("assume-canonical"),
                      QStringLiteral("The inputs are as normalize writes them; merge without regenerating.")});
}

// The labels default to the file names, as git merge-file's do.
std::optional<ConflictMarkers> Markers(const QCommandLineParser &parser, const QStringList &files)
{
    QStringList labels = parser.values(QStringLiteral("L"));
    if (labels.size() > 3) {
        UsageError(QStringLiteral("merge-file: at most three labels"));
        return std::nullopt;
    }
    const QStringList defaults{files.at(1), files.at(0), files.at(2)};
    while (labels.size() < 3)
        labels << defaults.at(labels.size());
    bool ok = false;
    const int size = parser.value(QStringLiteral("marker-size")).toInt(&ok);
    if (!ok || size < 1 || size > 1000) {
        UsageError(QStringLiteral("merge-file: bad marker size '%1'").arg(parser.value(QStringLiteral("marker-size"))));
        return std::nullopt;
    }
    return ConflictMarkers{labels.at(0), labels.at(1), labels.at(2), size};
}

int RunMergeFile(const QStringList &args, const Reader &)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddMergeFileOptions(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("merge-file"), args, 3, 3))
        return *status;
    const QStringList files = parser.positionalArguments();
    const auto markers = Markers(parser, files);
    if (!markers)
        return ExitError;

    QByteArray sides[3];
    for (int i = 0; i < 3; ++i) {
        QString error;
        if (!ReadMergeInput(files.at(i), &sides[i], &error))
            return ProgramMessage::Fail(error);
    }
    const MergeInputs inputs =
        parser.isSet(QStringLiteral("assume-canonical")) ? MergeInputs::Canonical : MergeInputs::Any;
    const DefinitionMergeResult result = MergeDefinitionDocuments(sides[0], sides[1], sides[2], *markers, inputs);
    if (!result.ok())
        return ProgramMessage::Fail(MergeInputError(result.error, files));

    const QString output =
        parser.isSet(QStringLiteral("output")) ? parser.value(QStringLiteral("output")) : files.at(1);
    QString error;
    if (!FileAccess::WriteFileAtomically(output, result.bytes, &error))
        return ProgramMessage::Fail(QStringLiteral("cannot write %1: %2").arg(output, error));
    if (result.clean())
        return ExitOk;
    PrintConflicts(output, result.conflicts);
    return ExitDifferent;
}

} // namespace

extern const Command MergeFileCommand{
    QStringLiteral("merge-file"),
    QStringLiteral("  product-editor merge-file BASE OURS THEIRS [-o OUT] [-L OURS_LABEL\n"
                   "                            -L BASE_LABEL -L THEIRS_LABEL] [--marker-size N]\n"
                   "                            [--assume-canonical]\n"
                   "      Merge three versions of products.json or of a layout file into OUT\n"
                   "      (default: OURS); exit 1 when conflicts remain. --assume-canonical is\n"
                   "      faster and only correct for inputs as normalize writes them.\n"),
    RunMergeFile};
