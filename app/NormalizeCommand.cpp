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

// A file whose bytes would not change is left alone (its time stamp too); the others
// go to `write`, and are counted as written when it succeeds.
Writer SkipUnchanged(Writer write, QStringList *written, QStringList *unchanged)
{
    return [write, written, unchanged](const QString &path, const QByteArray &bytes) {
        if (QFileInfo(path).isFile() && FileAccess::ReadFile(path) == bytes) {
            *unchanged << path;
            return true;
        }
        if (!write(path, bytes))
            return false;
        *written << path;
        return true;
    };
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
    parser.addOption({QStringLiteral("verbose"), QStringLiteral("Name every file written.")});
    if (const auto status = ParseArguments(parser, QStringLiteral("normalize"), args, 1, 1))
        return *status;

    const bool checkOnly = parser.isSet(QStringLiteral("check"));
    FileAccess access(checkOnly ? FileAccess::Mode::CompareOnly : FileAccess::Mode::Write);
    QStringList written;
    QStringList unchanged;
    const auto store = OpenFolder(parser.positionalArguments().at(0), CatalogueFile(parser), reader,
                                  checkOnly ? access.writer() : SkipUnchanged(access.writer(), &written, &unchanged));
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
    access.BeginSave(target);
    if (!store->SaveAs(target)) {
        Err() << "product-editor: " << target
              << ": cannot create the \"products\" or \"layouts\" folder\n";
        return ExitError;
    }
    // All files or none: a failed save wrote nothing.
    if (!access.FinishSave())
        written.clear();
    for (const QString &error : access.errors())
        Err() << "product-editor: cannot write " << error << "\n";
    if (parser.isSet(QStringLiteral("verbose"))) {
        for (const QString &path : qAsConst(written))
            Out() << "wrote " << path << "\n";
    }
    Out() << "wrote " << written.size() << (written.size() == 1 ? " file, " : " files, ") << unchanged.size()
          << " unchanged\n";
    return access.errors().isEmpty() ? ExitOk : ExitError;
}
