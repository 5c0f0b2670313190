#include "CommandLine.h"
#include "Commands.h"
#include "FileAccess.h"

#include <QDir>
#include <QFileInfo>

using namespace ProductEditor;

namespace {

// The files a save into `target` would write, for a target whose folders do
// not exist yet (every one of them would be new).
QStringList FilesASaveWrites(const VantixJsonData &store, const QDir &target)
{
    QStringList files{target.filePath(QStringLiteral("products/products.json"))};
    for (auto it = store.GetLayoutFiles().cbegin(); it != store.GetLayoutFiles().cend(); ++it)
        files << target.filePath(QStringLiteral("layouts/") + QFileInfo(it.key()).fileName());
    files.removeDuplicates();
    return files;
}

int CheckOnly(VantixJsonData &store, FileAccess &access, const QString &target)
{
    const QDir dir(target);
    QStringList changed;
    if (QFileInfo(dir.filePath(QStringLiteral("products"))).isDir()
        && QFileInfo(dir.filePath(QStringLiteral("layouts"))).isDir()) {
        // The comparing writer only reads; no folder needs creating here.
        store.SaveAs(target);
        changed = access.changedFiles();
    } else {
        changed = FilesASaveWrites(store, dir);
    }
    for (const QString &path : changed)
        Out() << path << "\n";
    return changed.isEmpty() ? ExitOk : ExitDifferent;
}

} // namespace

int RunNormalize(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    parser.addOption({QStringLiteral("out"), QStringLiteral("Write into this folder."), QStringLiteral("OUT")});
    parser.addOption({QStringLiteral("check"), QStringLiteral("List the files that would change; write nothing.")});
    if (const auto status = ParseArguments(parser, QStringLiteral("normalize"), args, 1, 1))
        return *status;

    const bool checkOnly = parser.isSet(QStringLiteral("check"));
    FileAccess access(checkOnly ? FileAccess::Mode::CompareOnly : FileAccess::Mode::Write);
    const auto store = OpenFolder(parser.positionalArguments().at(0), CatalogueFile(parser), reader, access.writer());
    if (!store)
        return ExitError;

    const bool haveOut = parser.isSet(QStringLiteral("out"));
    const QString target = haveOut ? QDir(parser.value(QStringLiteral("out"))).absolutePath()
                                   : store->GetFolder().absolutePath();
    if (checkOnly)
        return CheckOnly(*store, access, target);

    if (haveOut && !QDir().mkpath(target)) {
        Err() << "product-editor: " << target << ": cannot create the output folder\n";
        return ExitError;
    }
    if (!store->SaveAs(target)) {
        Err() << "product-editor: " << target
              << ": cannot create the \"products\" or \"layouts\" folder\n";
        return ExitError;
    }
    for (const QString &error : access.errors())
        Err() << "product-editor: cannot write " << error << "\n";
    return access.errors().isEmpty() ? ExitOk : ExitError;
}
