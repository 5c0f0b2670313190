#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "host/FileAccess.h"
#include "output/MatrixPrinter.h"
#include "output/ProgramMessage.h"

#include "store/RecordsSnapshot.h"

using namespace ProductEditor;

namespace {

// Prints features by products, or extensions by products and layouts, as a table.
int RunMatrix(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    parser.addOption({QStringLiteral("of"), QStringLiteral("What the rows are: features (default) or extensions."),
                      QStringLiteral("WHAT"), QStringLiteral("features")});
    parser.addOption({QStringLiteral("format"),
                      QStringLiteral("Output format: csv (default), markdown, html or json."),
                      QStringLiteral("FORMAT"), QStringLiteral("csv")});
    if (const auto status = ParseArguments(parser, QStringLiteral("matrix"), args, 1, 1))
        return *status;
    MatrixFormat format = MatrixFormat::Csv;
    if (!ParseMatrixFormat(parser.value(QStringLiteral("format")), &format))
        return ProgramMessage::Fail(QStringLiteral("matrix: unknown format '%1' (use csv, markdown, html or json)")
                                .arg(parser.value(QStringLiteral("format"))));
    const QString of = parser.value(QStringLiteral("of"));
    if (of != RecordMatrix::OfName(RecordMatrix::Of::Features) && of != RecordMatrix::OfName(RecordMatrix::Of::Extensions))
        return ProgramMessage::Fail(QStringLiteral("matrix: unknown --of '%1' (use features or extensions)").arg(of));

    const QString folder = parser.positionalArguments().at(0);
    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto store = OpenFolder(folder, CatalogueFile(parser), reader, access.writer());
    if (!store)
        return ExitError;
    const RecordMatrix matrix = RecordMatrix::Build(
        RecordsSnapshot::Take(*store),
        of == RecordMatrix::OfName(RecordMatrix::Of::Features) ? RecordMatrix::Of::Features : RecordMatrix::Of::Extensions);
    PrintMatrix(Out(), matrix, format, folder);
    return ExitOk;
}

} // namespace

extern const Command MatrixCommand{
    QStringLiteral("matrix"),
    QStringLiteral("  product-editor matrix DIR [--of features|extensions]\n"
                   "                        [--format csv|markdown|html|json]\n"
                   "      Print the features by products (a mark, or the specific licenses),\n"
                   "      or the extensions by products and layouts with their roles.\n"),
    RunMatrix};
