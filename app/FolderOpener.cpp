#include "FolderOpener.h"

#include "LoadMessages.h"

#include "store/DefaultLicenseCatalogue.h"

#include <QJsonObject>

using namespace ProductEditor;

namespace {

std::optional<QMap<QString, QString>> ReadCatalogue(const Reader &reader, const QString &file,
                                                    LoadProblem *problem)
{
    const QJsonDocument document = ParseJsonFile(file, reader ? reader(file) : QByteArray(), problem);
    if (!problem->message.isEmpty())
        return std::nullopt;
    if (!document.isObject()) {
        problem->message = QStringLiteral("the license catalogue must be a JSON object");
        return std::nullopt;
    }
    QMap<QString, QString> catalogue;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it)
        catalogue.insert(it.key(), it.value().isString() ? it.value().toString() : it.key());
    return catalogue;
}

} // namespace

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
    if (m_report.refusal)
        return {};
    if (m_catalogueFile.isEmpty())
        return DefaultLicenseCatalogue(store);
    LoadProblem problem;
    if (const auto catalogue = ReadCatalogue(m_reader, m_catalogueFile, &problem))
        return *catalogue;
    m_catalogueProblem = problem;
    return {};
}

std::unique_ptr<VantixJsonData> FolderOpener::Open(const QString &path, const Writer &writer)
{
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
    QStringList messages;
    for (const LoadProblem &skipped : m_report.skippedLayouts)
        messages << SkippedLayoutMessage(skipped);
    if (m_report.refusal)
        messages << RefusalMessage(*m_report.refusal);
    if (m_catalogueProblem)
        messages << RefusalMessage(*m_catalogueProblem);
    return messages;
}
