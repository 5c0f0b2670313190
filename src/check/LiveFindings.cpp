#include "check/LiveFindings.h"

#include "check/FolderChecker.h"
#include "check/RecordsCheck.h"
#include "store/DefinitionFolder.h"

#include <algorithm>

namespace ProductEditor {

namespace {

// The kinds of findings the records tell as they are now. Coverage naming an undefined
// extension is not one: loading has made that extension by then.
bool Superseded(const Diagnostic &diagnostic)
{
    static const QStringList codes{QStringLiteral("PE005"), QStringLiteral("PE006"), QStringLiteral("PE008"),
                                   QStringLiteral("PE014")};
    if (diagnostic.code == QLatin1String("PE007"))
        return !diagnostic.path.startsWith(QLatin1String("$.extensions.lic_coveradge"));
    return codes.contains(diagnostic.code);
}

// Products that share an id in the files are told by the files' findings, with their
// lines, as long as those stand; the records add only ids that edits made shared.
void DropToldByFiles(Diagnostics &records, const Diagnostics &files)
{
    QSet<QString> told;
    for (const Diagnostic &diagnostic : files) {
        if (diagnostic.code == QLatin1String("PE004"))
            told.insert(diagnostic.subjectId);
    }
    records.erase(std::remove_if(records.begin(), records.end(),
                                 [&told](const Diagnostic &diagnostic) {
                                     return diagnostic.code == QLatin1String("PE004")
                                            && told.contains(diagnostic.subjectId);
                                 }),
                  records.end());
}

// A finding the files already hold keeps their place for it, and the files' findings
// keep the record the records check names.
void Place(Diagnostics &records, const Diagnostics &files)
{
    QMultiHash<QString, const Diagnostic *> byText;
    for (const Diagnostic &diagnostic : files) {
        if (Superseded(diagnostic))
            byText.insert(diagnostic.file + diagnostic.code + diagnostic.message, &diagnostic);
    }
    for (Diagnostic &diagnostic : records) {
        const auto found = byText.find(diagnostic.file + diagnostic.code + diagnostic.message);
        if (found == byText.end())
            continue;
        diagnostic.line = found.value()->line;
        diagnostic.column = found.value()->column;
        diagnostic.path = found.value()->path;
        byText.erase(found);
    }
}

} // namespace

LiveFindings LiveFindings::Run(const Reader &reader, const QString &folder, const RecordsSnapshot &records,
                               const QMap<QString, QStringList> &layoutFiles, const LiveFindings *previous)
{
    FolderChecker checker(reader, QString());
    checker.LeaveInterruptedSaves();
    LiveFindings findings;
    Diagnostics rewrites;
    bool asLoaded = false;
    if (previous) {
        findings.files = previous->files;
        findings.catalogue = previous->catalogue;
        rewrites = checker.CheckSave(folder, records, &asLoaded);
    } else {
        findings.catalogue = records.licenses;
        checker.UseCatalogue(records.licenses);
        const CheckResult loaded = checker.Check(folder);
        findings.files = loaded.diagnostics;
        // Edits can come in between a load and the check of its files.
        asLoaded = !loaded.store || FolderChecker::WritesAsLoaded(records, *loaded.store);
        if (!asLoaded)
            rewrites = checker.CheckSave(folder, records, &asLoaded);
    }
    if (asLoaded) {
        // The records as the files hold them: every finding is placed in the files, each
        // repeated name and each layout that another file overrides included.
        if (records.licenses == findings.catalogue) {
            findings.all = findings.files;
            return findings;
        }
        for (const Diagnostic &diagnostic : qAsConst(findings.files)) {
            if (diagnostic.code == QLatin1String("PE014"))
                rewrites << diagnostic;
        }
    }
    Diagnostics now = CheckRecords(records, DefinitionFolder(folder).ProductsFile(), layoutFiles);
    DropToldByFiles(now, findings.files);
    Place(now, findings.files);
    for (const Diagnostic &diagnostic : qAsConst(findings.files)) {
        if (!Superseded(diagnostic))
            findings.all << diagnostic;
    }
    findings.all += now + rewrites;
    checker.Sort(findings.all);
    return findings;
}

} // namespace ProductEditor
