#include "CliSupport.h"
#include "Commands.h"
#include "DiffPrinter.h"

#include <QSet>

#include <algorithm>

using namespace ProductEditor;

namespace {

const QString ProductsName = QStringLiteral("Products");

// What the window's Update shows: each loaded document against its regenerated form.
std::vector<DiffReport> DiffAgainstResult(VantixJsonData &store)
{
    std::vector<DiffReport> reports;
    reports.push_back(
        CompareDocuments(ProductsName, store.GetProductsOriginalJson(), store.GetProductsResultJson()));
    const QMap<QString, QJsonObject> &original = store.GetLayoutsOriginalJsons();
    const QMap<QString, QJsonObject> &result = store.GetLayoutsResultJsons();
    for (auto it = original.cbegin(); it != original.cend(); ++it)
        reports.push_back(CompareDocuments(it.key(), it.value(), result.value(it.key())));
    return reports;
}

std::vector<DiffReport> DiffTwoResults(VantixJsonData &left, VantixJsonData &right)
{
    std::vector<DiffReport> reports;
    reports.push_back(CompareDocuments(ProductsName, left.GetProductsResultJson(), right.GetProductsResultJson()));
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

int RunDiff(const QStringList &args)
{
    QCommandLineParser parser;
    AddCommonOptions(parser);
    parser.addOption({QStringLiteral("format"), QStringLiteral("Output format: text (default) or json."),
                      QStringLiteral("FORMAT"), QStringLiteral("text")});
    if (!ParseCommand(parser, QStringLiteral("diff"), args, 1, 2))
        return ExitError;
    DiffFormat format = DiffFormat::Text;
    if (!ParseDiffFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    const QStringList folders = parser.positionalArguments();
    FileAccess leftAccess;
    auto left = OpenFolder(folders.at(0), parser, leftAccess);
    if (!left)
        return ExitError;
    left->UpdateResultJsons();

    std::vector<DiffReport> reports;
    QString leftSide = QStringLiteral("loaded %1").arg(folders.at(0));
    QString rightSide = QStringLiteral("regenerated %1").arg(folders.at(0));
    FileAccess rightAccess;
    std::unique_ptr<VantixJsonData> right;
    if (folders.size() == 2) {
        right = OpenFolder(folders.at(1), parser, rightAccess);
        if (!right)
            return ExitError;
        right->UpdateResultJsons();
        reports = DiffTwoResults(*left, *right);
        leftSide = QStringLiteral("regenerated %1").arg(folders.at(0));
        rightSide = QStringLiteral("regenerated %1").arg(folders.at(1));
    } else {
        reports = DiffAgainstResult(*left);
    }

    QVector<const DiffReport *> printed;
    for (const DiffReport &report : reports)
        printed.append(&report);
    return PrintDiffReports(Out(), printed, format, leftSide, rightSide) ? ExitDifferent : ExitOk;
}
