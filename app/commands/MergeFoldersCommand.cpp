#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "commands/MergeReport.h"
#include "host/FileAccess.h"
#include "host/FolderOpener.h"
#include "output/ProgramMessage.h"

#include "store/CanonicalDocument.h"
#include "store/DefinitionFolder.h"
#include "store/FolderTransaction.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>

using namespace ProductEditor;

namespace {

// The definition files of `folder` by relative path: products.json and every file
// directly in layouts, as a load reads them.
std::optional<QMap<QString, QByteArray>> ReadDefinitionFiles(const QString &folder, QString *error)
{
    const QDir dir(folder);
    if (!QFileInfo(folder).isDir()) {
        *error = QStringLiteral("%1: not a folder").arg(folder);
        return std::nullopt;
    }
    const DefinitionFolder layout(folder);
    QStringList paths;
    if (QFileInfo::exists(layout.ProductsFile()))
        paths << DefinitionFolder::ProductsRelativePath();
    for (const QString &name : QDir(layout.LayoutsFolder()).entryList(QDir::Files | QDir::Hidden, QDir::Name))
        paths << DefinitionFolder::LayoutRelativePath(name);
    QMap<QString, QByteArray> files;
    for (const QString &path : paths)
        if (!ReadMergeInput(dir.filePath(path), &files[path], error))
            return std::nullopt;
    return files;
}

// Unchanged up to what normalize changes.
bool SameDocument(const QByteArray &left, const QByteArray &right)
{
    const CanonicalDocument a = CanonicalizeDefinitionDocument(left);
    const CanonicalDocument b = CanonicalizeDefinitionDocument(right);
    return a.ok() && b.ok() ? a.bytes == b.bytes : left == right;
}

struct FolderMerge
{
    QStringList folders; // base, ours, theirs
    QMap<QString, QByteArray> sides[3];
    QMap<QString, QByteArray> result;
    int conflicted = 0;

    bool MergeFile(const QString &path, const QString &target);
};

bool FolderMerge::MergeFile(const QString &path, const QString &target)
{
    const bool inBase = sides[0].contains(path), inOurs = sides[1].contains(path), inTheirs = sides[2].contains(path);
    if (inOurs && inTheirs) {
        QStringList names;
        for (const QString &folder : folders)
            names << QDir(folder).filePath(path);
        const DefinitionMergeResult merged = MergeDefinitionDocuments(
            sides[0].value(path), sides[1].value(path), sides[2].value(path),
            ConflictMarkers{names.at(1), names.at(0), names.at(2), 7});
        if (!merged.ok()) {
            ProgramMessage::Fail(MergeInputError(merged.error, names));
            return false;
        }
        result.insert(path, merged.bytes);
        if (!merged.clean()) {
            PrintConflicts(target, merged.conflicts);
            ++conflicted;
        }
        return true;
    }
    if (!inOurs && !inTheirs)
        return true;
    const QByteArray &kept = inOurs ? sides[1][path] : sides[2][path];
    if (inBase && SameDocument(kept, sides[0].value(path)))
        return true;
    result.insert(path, kept);
    if (inBase) {
        Err() << target << ": changed in " << (inOurs ? "ours" : "theirs") << ", deleted in "
              << (inOurs ? "theirs" : "ours") << "; the changed file is kept\n";
        ++conflicted;
    }
    return true;
}

// The merged folder replaces what `out` held all at once, or not at all.
int WriteResult(const FolderMerge &merge, const QStringList &paths, const QDir &out)
{
    FolderOpener opener(FileAccess::ReadFile, QString());
    const bool recovered = opener.Recover(out.absolutePath());
    ProgramMessage::Print(opener.Messages());
    if (!recovered)
        return ExitError;
    FolderTransaction save(out.absolutePath());
    for (const QString &path : paths) {
        const QString target = out.filePath(path);
        if (!merge.result.contains(path)) {
            if (QFileInfo::exists(target))
                save.StageRemoval(target);
            continue;
        }
        QString error;
        if (!QDir().mkpath(QFileInfo(target).path()) || !save.Stage(target, merge.result.value(path), &error))
            return ProgramMessage::Fail(QStringLiteral("cannot write %1: %2").arg(target, error));
    }
    QString error;
    if (!save.Commit(&error))
        return ProgramMessage::Fail(QStringLiteral("cannot write %1").arg(error));
    return merge.conflicted ? ExitDifferent : ExitOk;
}

int RunMergeFolders(const QStringList &args, const Reader &)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    parser.addOption({QStringLiteral("out"), QStringLiteral("Write the merged folder here."), QStringLiteral("DIR")});
    if (const auto status = ParseArguments(parser, QStringLiteral("merge"), args, 3, 3))
        return *status;
    if (!parser.isSet(QStringLiteral("out")))
        return UsageError(QStringLiteral("merge: missing --out DIR"));

    FolderMerge merge;
    merge.folders = parser.positionalArguments();
    QStringList paths;
    for (int i = 0; i < 3; ++i) {
        QString error;
        const auto files = ReadDefinitionFiles(merge.folders.at(i), &error);
        if (!files)
            return ProgramMessage::Fail(error);
        merge.sides[i] = *files;
        paths += files->keys();
    }
    paths.sort();
    paths.removeDuplicates();
    const QString products = DefinitionFolder::ProductsRelativePath();
    if (!merge.sides[1].contains(products) && !merge.sides[2].contains(products))
        return ProgramMessage::Fail(QStringLiteral("%1, %2: no %3").arg(merge.folders.at(1), merge.folders.at(2), products));

    const QDir out(parser.value(QStringLiteral("out")));
    for (const QString &path : paths)
        if (!merge.MergeFile(path, out.filePath(path)))
            return ExitError;
    return WriteResult(merge, paths, out);
}

} // namespace

extern const Command MergeFoldersCommand{
    QStringLiteral("merge"),
    QStringLiteral("  product-editor merge BASE_DIR OURS_DIR THEIRS_DIR --out DIR\n"
                   "      Merge three versions of a definition folder into DIR.\n"),
    RunMergeFolders};
