#include "CommandLine.h"
#include "Commands.h"
#include "DiffPrinter.h"
#include "FileAccess.h"

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

} // namespace

int RunDiff(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    AddFormatOption(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("diff"), args, 1, 2))
        return *status;
    DiffFormat format = DiffFormat::Text;
    if (!ParseDiffFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    const QStringList folders = parser.positionalArguments();
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
    const bool different = PrintDiffReports(Out(), DiffTwoResults(*left, *right), format,
                                            QStringLiteral("regenerated %1").arg(folders.at(0)),
                                            QStringLiteral("regenerated %1").arg(folders.at(1)));
    return different ? ExitDifferent : ExitOk;
}
