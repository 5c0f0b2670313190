#include "host/FolderOpener.h"

#include "output/LoadMessages.h"

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
    m_report = LoadReport();
    m_report.refusal = m_recovery.refusal;
    return !m_recovery.refusal;
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
    return m_loaded && !m_report.refusal && !m_catalogueProblem;
}

QStringList FolderOpener::Messages() const
{
    return RecoveryWarnings(m_recovery) + OpenMessages(m_report, m_catalogueProblem);
}
