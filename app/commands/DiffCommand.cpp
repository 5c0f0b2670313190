#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "commands/RevisionOptions.h"
#include "git/RevisionFolders.h"
#include "host/FileAccess.h"
#include "output/DiffPrinter.h"
#include "output/ProgramMessage.h"
#include "output/ChangesPrinter.h"

#include "store/ComparedDocument.h"
#include "store/RecordComparison.h"

#include <algorithm>

using namespace ProductEditor;

namespace {

// What the window's Update shows: each loaded document against its regenerated form.
std::vector<DiffReport> DiffAgainstResult(VantixJsonData &store)
{
    std::vector<DiffReport> reports;
    for (const ComparedDocument &document : UpdateComparedDocuments(store))
        reports.push_back(CompareDocuments(document.name, document.left, document.right));
    return reports;
}

std::vector<DiffReport> DiffTwoResults(VantixJsonData &left, VantixJsonData &right)
{
    std::vector<DiffReport> reports;
    reports.push_back(
        CompareDocuments(QStringLiteral("Products"), left.GetProductsResultJson(), right.GetProductsResultJson()));
    const QMap<QString, QJsonObject> &leftLayouts = left.GetLayoutsResultJsons();
    const QMap<QString, QJsonObject> &rightLayouts = right.GetLayoutsResultJsons();
    QStringList names = leftLayouts.keys() + rightLayouts.keys();
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    for (const QString &name : names)
        reports.push_back(CompareDocuments(name, leftLayouts.value(name), rightLayouts.value(name)));
    return reports;
}

int RunDiff(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    AddFormatOption(parser);
    AddRevisionOptions(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("diff"), args, 1, 2))
        return *status;
    // The review format is the diff's own: compare-products has no records to compare.
    const bool review = parser.value(QStringLiteral("format")) == QLatin1String("review");
    DiffFormat format = DiffFormat::Text;
    if (!review && !ParseDiffFormat(parser.value(QStringLiteral("format")), &format, "text, json or review"))
        return ExitError;

    QStringList folders = parser.positionalArguments();
    QStringList sides = folders;
    RevisionFolders revisions;
    if (const auto status = UseRevisions(QStringLiteral("diff"), parser, revisions, &folders, &sides))
        return *status;
    if (review && folders.size() == 1)
        return UsageError(QStringLiteral("diff: --format review compares two versions: give OTHER or --from"));
    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto left = OpenFolder(folders.at(0), CatalogueFile(parser), reader, access.writer());
    if (!left)
        return ExitError;
    if (folders.size() == 1) {
        left->UpdateResultJsons();
        const bool different = PrintDiffReports(Out(), DiffAgainstResult(*left), format,
                                                QStringLiteral("loaded %1").arg(folders.at(0)),
                                                QStringLiteral("regenerated %1").arg(folders.at(0)));
        return different ? ExitDifferent : ExitOk;
    }
    const auto right = OpenFolder(folders.at(1), CatalogueFile(parser), reader, access.writer());
    if (!right)
        return ExitError;
    if (review) {
        const RecordChanges changes = CompareRecords(RecordsSnapshot::Take(*left), RecordsSnapshot::Take(*right));
        PrintChanges(Out(), changes, ChangesFormat::Markdown, sides.at(0), sides.at(1));
        return changes.isEmpty() ? ExitOk : ExitDifferent;
    }
    left->UpdateResultJsons();
    right->UpdateResultJsons();
    const QString regenerated = QStringLiteral("regenerated ");
    const bool different = PrintDiffReports(Out(), DiffTwoResults(*left, *right), format,
                                            regenerated + sides.at(0), regenerated + sides.at(1));
    return different ? ExitDifferent : ExitOk;
}

} // namespace

extern const Command DiffCommand{
    QStringLiteral("diff"),
    QStringLiteral("  product-editor diff DIR [OTHER] [--format text|json|review]\n"
                   "      Show what regenerating DIR changes, or how DIR and OTHER differ.\n"
                   "  product-editor diff DIR --from REV [--to REV] [--format text|json|review]\n"
                   "      Show how DIR differs between two git revisions (default --to: the\n"
                   "      working tree). --format review lists the changes in product terms,\n"
                   "      in Markdown, as changes --format markdown does.\n"),
    RunDiff};
