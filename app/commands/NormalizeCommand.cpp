#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "host/FileAccess.h"
#include "output/ProgramMessage.h"
#include "store/DefinitionFolder.h"

#include <QDir>
#include <QFileInfo>

using namespace ProductEditor;

namespace {

// The files a save into `target` would write, for a target whose folders do
// not exist yet (every one of them would be new).
QStringList FilesASaveWrites(const VantixJsonData &store, const DefinitionFolder &target)
{
    QStringList files{target.ProductsFile()};
    for (auto it = store.GetLayoutFiles().cbegin(); it != store.GetLayoutFiles().cend(); ++it)
        files << target.LayoutFile(it.key());
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
    const DefinitionFolder folder(target);
    QStringList changed;
    if (folder.HasSubFolders()) {
        // The comparing writer only reads; no folder needs creating here.
        store.SaveAs(target);
        changed = access.changedFiles();
    } else {
        changed = FilesASaveWrites(store, folder);
    }
    for (const QString &path : changed)
        Out() << path << "\n";
    return changed.isEmpty() ? ExitOk : ExitDifferent;
}

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

    if (haveOut && !QDir().mkpath(target))
        return ProgramMessage::Fail(target + QStringLiteral(": cannot create the output folder"));
    access.BeginSave(target);
    if (!store->SaveAs(target))
        return ProgramMessage::Fail(target + QStringLiteral(": cannot create the \"products\" or \"layouts\" folder"));
    // All files or none: a failed save wrote nothing.
    if (!access.FinishSave())
        written.clear();
    for (const QString &error : access.errors())
        ProgramMessage::Fail(QStringLiteral("cannot write ") + error);
    if (parser.isSet(QStringLiteral("verbose"))) {
        for (const QString &path : qAsConst(written))
            Out() << "wrote " << path << "\n";
    }
    Out() << "wrote " << written.size() << (written.size() == 1 ? " file, " : " files, ") << unchanged.size()
          << " unchanged\n";
    return access.errors().isEmpty() ? ExitOk : ExitError;
}

} // namespace

extern const Command NormalizeCommand{
    QStringLiteral("normalize"),
    QStringLiteral("  product-editor normalize DIR [--out OUT] [--check] [--verbose]\n"
                   "      Rewrite DIR (or write OUT) in canonical form, leaving unchanged files\n"
                   "      alone; --check only lists the files that would change (exit 1 when\n"
                   "      any would); --verbose names the files written.\n"),
    RunNormalize};
