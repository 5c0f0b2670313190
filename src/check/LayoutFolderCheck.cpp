#include "check/LayoutFolderCheck.h"

#include "check/ProblemDescription.h"

#include <QDir>
#include <QFileInfo>

namespace ProductEditor {

namespace {

Diagnostic FileDiagnostic(const QString &file, const char *code, const QString &message)
{
    Diagnostic diagnostic;
    diagnostic.code = QString::fromLatin1(code);
    diagnostic.file = file;
    diagnostic.path = QStringLiteral("$");
    diagnostic.message = message;
    return diagnostic;
}

} // namespace

Diagnostics CheckLayoutFolder(const QString &layoutsFolder, const LoadReport &report,
                              const QVector<const ScannedDocument *> &loaded)
{
    Diagnostics out;
    for (const LoadProblem &skipped : report.skippedLayouts) {
        Diagnostic diagnostic = FileDiagnostic(
            skipped.file, "PE011",
            QStringLiteral("skipped, %1; loading reads no layout from it and saving leaves it as it is")
                .arg(ProblemDescription(skipped)));
        if (skipped.IsParseError()) {
            diagnostic.line = skipped.line;
            diagnostic.column = skipped.column;
        }
        out << diagnostic;
    }
    for (const ScannedDocument *document : loaded) {
        if (document->json.member(document->json.root(), QLatin1String("layouts")) < 0)
            out << document->At(document->json.root(), "PE011",
                                QStringLiteral("the file has no \"layouts\" key; loading reads no layout from it "
                                               "and saving leaves it as it is"));
    }
    const QFileInfo folderInfo(layoutsFolder);
    if (folderInfo.exists() && !folderInfo.isDir())
        out << FileDiagnostic(layoutsFolder, "PE012",
                              QStringLiteral("\"layouts\" is not a folder; loading reads no layout"));
    const QDir folder(layoutsFolder);
    const QFileInfoList entries =
        folder.entryInfoList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir())
            out << FileDiagnostic(entry.filePath(), "PE012",
                                  QStringLiteral("a folder in \"layouts\"; loading does not read it"));
        else if (!entry.isFile())
            out << FileDiagnostic(entry.filePath(), "PE012",
                                  QStringLiteral("not a regular file (a broken link or a special file); loading "
                                                 "does not read it"));
    }
    return out;
}

} // namespace ProductEditor
