#include "FolderOpener.h"

#include "LoadMessages.h"

#include "store/LicenseCatalogueFile.h"

using namespace ProductEditor;

FolderOpener::FolderOpener(Reader reader, QString catalogueFile)
    : m_reader(std::move(reader))
    , m_catalogueFile(std::move(catalogueFile))
{
}

QMap<QString, QString> FolderOpener::Catalogue(VantixJsonData &store)
{
    m_loaded = true;
    m_report = store.GetLoadReport();
    m_catalogueProblem.reset();
    LoadProblem problem;
    if (const auto catalogue = LoadLicenseCatalogue(store, m_reader, m_catalogueFile, &problem))
        return *catalogue;
    m_catalogueProblem = problem;
    return {};
}

bool FolderOpener::Recover(const QString &path)
{
    m_recovery = FolderTransaction::Recover(path);
    return m_recovery.outcome != FolderRecovery::Outcome::Refused;
}

std::unique_ptr<VantixJsonData> FolderOpener::Open(const QString &path, const Writer &writer)
{
    if (!Recover(path))
        return nullptr;
    auto store = std::make_unique<VantixJsonData>(path, m_reader, writer, QMap<QString, QString>());
    store->GetLicenses() = Catalogue(*store);
    if (!Opened())
        store.reset();
    return store;
}

bool FolderOpener::Opened() const
{
    return m_loaded && !m_report.refusal && !m_catalogueProblem
           && m_recovery.outcome != FolderRecovery::Outcome::Refused;
}

QStringList FolderOpener::Messages() const
{
    QStringList messages;
    for (const QString &note : m_recovery.notes)
        messages << QStringLiteral("product-editor: warning: ") + note;
    if (m_recovery.outcome == FolderRecovery::Outcome::Refused)
        messages << RefusalMessage(LoadProblem{m_recovery.file, m_recovery.problem});
    return messages + OpenMessages(m_report, m_catalogueProblem);
}
