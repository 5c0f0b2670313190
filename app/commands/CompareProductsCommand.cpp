#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "host/FileAccess.h"
#include "output/DiffPrinter.h"
#include "output/ProgramMessage.h"

#include "store/ComparedDocument.h"

using namespace ProductEditor;

namespace {

int RunCompareProducts(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    AddFormatOption(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("compare-products"), args, 3, 3))
        return *status;
    DiffFormat format = DiffFormat::Text;
    if (!ParseDiffFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    const QStringList positional = parser.positionalArguments();
    const QString leftId = positional.at(1);
    const QString rightId = positional.at(2);
    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto store = OpenFolder(positional.at(0), CatalogueFile(parser), reader, access.writer());
    if (!store)
        return ExitError;
    store->UpdateResultJsons();

    ComparedDocument pair = ProductsToCompare(store->GetProductsResultJson(), leftId, rightId);
    if (leftId == rightId)
        pair.right = pair.left;
    for (const auto &[id, product] : {std::make_pair(leftId, &pair.left), std::make_pair(rightId, &pair.right)}) {
        if (product->isEmpty()) {
            return ProgramMessage::Fail(
                QStringLiteral("compare-products: no product with id '%1' in %2").arg(id, positional.at(0)));
        }
    }

    // Objects with different ids are never compared, so the right product is compared
    // as another version of the left one.
    pair.right.insert(QStringLiteral("id"), pair.left.value(QStringLiteral("id")));
    std::vector<DiffReport> reports;
    reports.push_back(CompareDocuments(pair.name, pair.left, pair.right));
    if (format == DiffFormat::Text && !reports.front().tree)
        Out() << "=== " << pair.name << ": no differences\n";
    const bool different = PrintDiffReports(Out(), reports, format, QStringLiteral("product %1").arg(leftId),
                                            QStringLiteral("product %1").arg(rightId));
    return different ? ExitDifferent : ExitOk;
}

} // namespace

extern const Command CompareProductsCommand{
    QStringLiteral("compare-products"),
    QStringLiteral("  product-editor compare-products DIR LEFT RIGHT [--format text|json]\n"
                   "      Compare two products of DIR.\n"),
    RunCompareProducts};
