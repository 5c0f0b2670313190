#include "check/LiveFindings.h"

#include "check/FolderChecker.h"
#include "check/RecordsCheck.h"

#include <QDir>

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

// Whether a save of `records` writes what a save right after the load would: edits can
// come in between a load and the check of its files. The catalogue is not written.
bool SameAsLoaded(const RecordsSnapshot &records, VantixJsonData &loaded)
{
    RecordsSnapshot asLoaded = RecordsSnapshot::Take(loaded);
    asLoaded.licenses = records.licenses;
    return asLoaded == records;
}

} // namespace

LiveFindings LiveFindings::Run(const Reader &reader, const QString &folder, const RecordsSnapshot &records,
                               const QMap<QString, QStringList> &layoutFiles, std::optional<Diagnostics> files)
{
    FolderChecker checker(reader, QString());
    checker.LeaveInterruptedSaves();
    LiveFindings findings;
    Diagnostics rewrites;
    if (files) {
        findings.files = *files;
        rewrites = checker.CheckSave(folder, records);
    } else {
        checker.UseCatalogue(records.licenses);
        const CheckResult loaded = checker.Check(folder);
        findings.files = loaded.diagnostics;
        if (loaded.store && !SameAsLoaded(records, *loaded.store)) {
            rewrites = checker.CheckSave(folder, records);
        } else {
            for (const Diagnostic &diagnostic : qAsConst(findings.files)) {
                if (diagnostic.code == QLatin1String("PE014"))
                    rewrites << diagnostic;
            }
        }
    }
    Diagnostics now = CheckRecords(records, QDir(folder).filePath(QStringLiteral("products/products.json")), layoutFiles);
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
