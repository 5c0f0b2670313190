#include "CommandLine.h"
#include "Commands.h"
#include "DiffPrinter.h"
#include "FileAccess.h"
#include "MergeReport.h"
#include "RevisionFolders.h"

#include "store/ComparedDocument.h"

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

// With --from, DIR at the two revisions takes the place of the two folders. Returns the
// exit status when the run ends here.
std::optional<int> UseRevisions(const QCommandLineParser &parser, RevisionFolders &revisions, QStringList *folders,
                                QStringList *sides)
{
    const QString from = parser.value(QStringLiteral("from")), to = parser.value(QStringLiteral("to"));
    if (!parser.isSet(QStringLiteral("from"))) {
        if (parser.isSet(QStringLiteral("to")))
            return UsageError(QStringLiteral("diff: --to needs --from"));
        return std::nullopt;
    }
    if (folders->size() != 1)
        return UsageError(QStringLiteral("diff: unexpected argument '%1' with --from").arg(folders->at(1)));
    QString error;
    if (!revisions.Prepare(folders->at(0), from, to, &error))
        return CommandError(error);
    const QString folder = folders->at(0);
    *sides = QStringList{QStringLiteral("regenerated %1 at %2").arg(folder, from),
                         to.isEmpty() ? sides->at(0) : QStringLiteral("regenerated %1 at %2").arg(folder, to)};
    *folders = QStringList{revisions.leftPath(), revisions.rightPath()};
    return std::nullopt;
}

} // namespace

int RunDiff(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    AddFormatOption(parser);
    parser.addOption({QStringLiteral("from"), QStringLiteral("Compare DIR as it is at this git revision."),
                      QStringLiteral("REV")});
    parser.addOption({QStringLiteral("to"),
                      QStringLiteral("Compare with DIR at this revision instead of the working tree."),
                      QStringLiteral("REV")});
    if (const auto status = ParseArguments(parser, QStringLiteral("diff"), args, 1, 2))
        return *status;
    DiffFormat format = DiffFormat::Text;
    if (!ParseDiffFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    QStringList folders = parser.positionalArguments();
    QStringList sides{QStringLiteral("regenerated %1").arg(folders.at(0)),
                      QStringLiteral("regenerated %1").arg(folders.value(1))};
    RevisionFolders revisions;
    if (const auto status = UseRevisions(parser, revisions, &folders, &sides))
        return *status;
    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto left = OpenFolder(folders.at(0), CatalogueFile(parser), reader, access.writer());
    if (!left)
        return ExitError;
    left->UpdateResultJsons();
    if (folders.size() == 1) {
        const bool different = PrintDiffReports(Out(), DiffAgainstResult(*left), format,
                                                QStringLiteral("loaded %1").arg(folders.at(0)),
                                                QStringLiteral("regenerated %1").arg(folders.at(0)));
        return different ? ExitDifferent : ExitOk;
    }
    const auto right = OpenFolder(folders.at(1), CatalogueFile(parser), reader, access.writer());
    if (!right)
        return ExitError;
    right->UpdateResultJsons();
    const bool different =
        PrintDiffReports(Out(), DiffTwoResults(*left, *right), format, sides.at(0), sides.at(1));
    return different ? ExitDifferent : ExitOk;
}
