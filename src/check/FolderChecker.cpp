#include "check/FolderChecker.h"

#include "check/DocumentShape.h"
#include "check/LayoutFolderCheck.h"
#include "check/ProblemDescription.h"
#include "check/ReferenceCheck.h"
#include "store/DefinitionFolder.h"
#include "store/LicenseCatalogueFile.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <deque>

namespace ProductEditor {

namespace {

Diagnostic ErrorAt(const QString &file, int line, int column, const QString &message)
{
    Diagnostic diagnostic;
    diagnostic.code = QStringLiteral("PE000");
    diagnostic.severity = Diagnostic::Severity::Error;
    diagnostic.file = file;
    diagnostic.line = qMax(1, line);
    diagnostic.column = qMax(1, column);
    diagnostic.path = QStringLiteral("$");
    diagnostic.message = message;
    return diagnostic;
}

// Where a save would first change the file, in the file as it is.
Diagnostic Rewrite(const QString &file, const QByteArray &old, const QByteArray &now)
{
    const int common = qMin(old.size(), now.size());
    int at = 0;
    while (at < common && old.at(at) == now.at(at))
        ++at;
    const int lineStart = at > 0 ? old.lastIndexOf('\n', at - 1) + 1 : 0;
    Diagnostic diagnostic;
    diagnostic.code = QStringLiteral("PE014");
    diagnostic.file = file;
    diagnostic.line = old.left(at).count('\n') + 1;
    diagnostic.column = QString::fromUtf8(old.constData() + lineStart, at - lineStart).size() + 1;
    diagnostic.path = QStringLiteral("$");
    diagnostic.message = QStringLiteral("the file is not in canonical form from here on; normalize and every save "
                                        "rewrite it");
    return diagnostic;
}

QString Key(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

} // namespace

FolderChecker::FolderChecker(Reader reader, QString catalogueFile)
    : m_reader(std::move(reader))
    , m_catalogueFile(std::move(catalogueFile))
{
}

Reader FolderChecker::RecordingReader()
{
    return [this](const QString &path) {
        const QByteArray bytes = m_reader ? m_reader(path) : QByteArray();
        m_reads << path;
        m_bytes.insert(path, bytes);
        return bytes;
    };
}

CheckResult FolderChecker::Check(const QString &folder)
{
    m_reads.clear();
    m_bytes.clear();
    CheckResult result;
    const Reader reader = RecordingReader();
    const Writer writer = [this](const QString &path, const QByteArray &bytes) { return !m_write || m_write(path, bytes); };
    if (m_recover)
        result.recovery = FolderTransaction::Recover(folder);
    if (const auto &refusal = result.recovery.refusal) {
        result.report.refusal = refusal;
        result.diagnostics << ErrorAt(refusal->file, refusal->line, refusal->column, ProblemDescription(*refusal));
        return result;
    }
    auto store = std::make_unique<VantixJsonData>(folder, reader, writer, QMap<QString, QString>());
    const int folderReads = m_reads.size();
    result.report = store->GetLoadReport();
    LoadProblem catalogueProblem;
    if (m_catalogue)
        store->GetLicenses() = *m_catalogue;
    else if (const auto catalogue = LoadLicenseCatalogue(*store, reader, m_catalogueFile, &catalogueProblem))
        store->GetLicenses() = *catalogue;
    else
        result.catalogueProblem = catalogueProblem;
    if (const auto &refusal = result.report.refusal) {
        result.diagnostics << ErrorAt(refusal->file, refusal->line, refusal->column, ProblemDescription(*refusal));
        return result;
    }
    if (result.catalogueProblem) {
        result.diagnostics << CatalogueRefusal(*result.catalogueProblem);
        return result;
    }
    result.diagnostics = CheckDocuments(*store, folderReads) + CheckCanonical(*store);
    Sort(result.diagnostics);
    result.store = std::move(store);
    return result;
}

void FolderChecker::UseCatalogue(const QMap<QString, QString> &catalogue)
{
    m_catalogue = catalogue;
}

void FolderChecker::LeaveInterruptedSaves()
{
    m_recover = false;
}

bool FolderChecker::WritesAsLoaded(const RecordsSnapshot &records, VantixJsonData &loaded)
{
    RecordsSnapshot asLoaded = RecordsSnapshot::Take(loaded);
    asLoaded.licenses = records.licenses;
    return asLoaded == records;
}

Diagnostics FolderChecker::CheckSave(const QString &folder, const RecordsSnapshot &records, bool *asLoaded)
{
    m_reads.clear();
    m_bytes.clear();
    const Writer writer = [this](const QString &path, const QByteArray &bytes) { return !m_write || m_write(path, bytes); };
    VantixJsonData store(folder, RecordingReader(), writer, QMap<QString, QString>());
    *asLoaded = !store.GetLoadReport().refusal && WritesAsLoaded(records, store);
    if (store.GetLoadReport().refusal || *asLoaded)
        return {};
    records.Restore(store);
    return CheckCanonical(store);
}

Diagnostic FolderChecker::CatalogueRefusal(const LoadProblem &problem) const
{
    return ErrorAt(m_catalogueFile, problem.line, problem.column, ProblemDescription(problem));
}

Diagnostics FolderChecker::CheckDocuments(VantixJsonData &store, int folderReads) const
{
    Diagnostics out;
    const ScannedDocument products{m_reads.value(0), JsonPositionScanner(m_bytes.value(m_reads.value(0)))};
    DocumentShape::ProductsDocument().Check(products, products.json.root(), out);

    QStringList skipped;
    for (const LoadProblem &problem : store.GetLoadReport().skippedLayouts)
        skipped << problem.file;
    std::deque<ScannedDocument> layoutDocuments; // addresses stay put
    QVector<const ScannedDocument *> layouts;
    for (int i = 1; i < folderReads; ++i) {
        if (skipped.contains(m_reads.at(i)))
            continue;
        layoutDocuments.push_back({m_reads.at(i), JsonPositionScanner(m_bytes.value(m_reads.at(i)))});
        const ScannedDocument &layout = layoutDocuments.back();
        layouts << &layout;
        // A file without "layouts" is never written back, so nothing in it is dropped.
        if (layout.json.member(layout.json.root(), QLatin1String("layouts")) >= 0)
            DocumentShape::LayoutDocument().Check(layout, layout.json.root(), out);
    }

    std::optional<QSet<QString>> catalogue;
    if (!m_catalogueFile.isEmpty() || m_catalogue) {
        const QStringList names = store.GetLicenses().keys();
        catalogue = QSet<QString>(names.cbegin(), names.cend());
    }
    out += ReferenceCheck(products, layouts, catalogue).Run();
    out += CheckLayoutFolder(DefinitionFolder(store.GetFolder().path()).LayoutsFolder(), store.GetLoadReport(), layouts);
    return out;
}

Diagnostics FolderChecker::CheckCanonical(VantixJsonData &store)
{
    // The save goes to a scratch folder, so nothing in the checked folder is touched
    // (not even a missing "layouts" folder created); each file it would write is
    // compared with the bytes that were read from the same place.
    QTemporaryDir scratch;
    if (!scratch.isValid())
        return {};
    QHash<QString, QString> readPaths;
    for (const QString &path : qAsConst(m_reads))
        readPaths.insert(Key(path), path);
    const QDir root(store.GetFolder().absolutePath());
    const QDir target(scratch.path());
    Diagnostics out;
    m_write = [&](const QString &path, const QByteArray &bytes) {
        const QString read = readPaths.value(Key(root.filePath(target.relativeFilePath(path))));
        const QByteArray old = m_bytes.value(read);
        if (!read.isEmpty() && old != bytes)
            out << Rewrite(read, old, bytes);
        return true;
    };
    store.SaveAs(scratch.path());
    m_write = nullptr;
    return out;
}

void FolderChecker::Sort(Diagnostics &diagnostics) const
{
    QHash<QString, int> order;
    for (int i = m_reads.size() - 1; i >= 0; --i)
        order.insert(m_reads.at(i), i);
    const auto rank = [&order, this](const Diagnostic &diagnostic) {
        return std::make_tuple(order.value(diagnostic.file, m_reads.size()), diagnostic.file, diagnostic.line,
                               diagnostic.column);
    };
    std::stable_sort(diagnostics.begin(), diagnostics.end(),
                     [&rank](const Diagnostic &a, const Diagnostic &b) { return rank(a) < rank(b); });
}

} // namespace ProductEditor
