#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "commands/RevisionOptions.h"
#include "git/RevisionFolders.h"
#include "host/FileAccess.h"
#include "output/ChangesPrinter.h"

#include "store/DocumentRecords.h"
#include "store/RecordComparison.h"

using namespace ProductEditor;

namespace {

// What a save of the folder would change: the records as loaded against the records
// its regenerated documents hold.
RecordChanges ChangesOfSave(VantixJsonData &store)
{
    const RecordsSnapshot loaded = RecordsSnapshot::Take(store);
    store.UpdateResultJsons();
    return CompareRecords(loaded, DecodeRecords(store.GetProductsResultJson(), store.GetLayoutsResultJsons(),
                                                store.GetLicenses()));
}

int RunChanges(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    parser.addOption({QStringLiteral("format"), QStringLiteral("Output format: text (default), markdown or json."),
                      QStringLiteral("FORMAT"), QStringLiteral("text")});
    AddRevisionOptions(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("changes"), args, 1, 2))
        return *status;
    ChangesFormat format = ChangesFormat::Text;
    if (!ParseChangesFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    QStringList folders = parser.positionalArguments();
    QStringList sides = folders;
    RevisionFolders revisions;
    if (const auto status = UseRevisions(QStringLiteral("changes"), parser, revisions, &folders, &sides))
        return *status;
    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto left = OpenFolder(folders.at(0), CatalogueFile(parser), reader, access.writer());
    if (!left)
        return ExitError;
    RecordChanges changes;
    if (folders.size() == 1) {
        sides = QStringList{QStringLiteral("%1 as loaded").arg(folders.at(0)),
                            QStringLiteral("%1 as saved").arg(folders.at(0))};
        changes = ChangesOfSave(*left);
    } else {
        const auto right = OpenFolder(folders.at(1), CatalogueFile(parser), reader, access.writer());
        if (!right)
            return ExitError;
        changes = CompareRecords(RecordsSnapshot::Take(*left), RecordsSnapshot::Take(*right));
    }
    PrintChanges(Out(), changes, format, sides.at(0), sides.at(1));
    return changes.isEmpty() ? ExitOk : ExitDifferent;
}

} // namespace

extern const Command ChangesCommand{
    QStringLiteral("changes"),
    QStringLiteral("  product-editor changes DIR [OTHER] [--format text|markdown|json]\n"
                   "      List in product terms how OTHER differs from DIR (features gained and\n"
                   "      lost per product, renames, titles, licenses, extensions), or what a\n"
                   "      save of DIR would change.\n"
                   "  product-editor changes DIR --from REV [--to REV] [--format text|markdown|json]\n"
                   "      The same between two git revisions of DIR (default --to: the working\n"
                   "      tree). Markdown is for a pull-request comment; the JSON has a version.\n"),
    RunChanges};
