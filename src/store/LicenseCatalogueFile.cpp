#include "store/LicenseCatalogueFile.h"

#include "store/DefaultLicenseCatalogue.h"

#include <QJsonObject>

namespace ProductEditor {

std::optional<QMap<QString, QString>> LoadLicenseCatalogue(VantixJsonData &store, const Reader &reader,
                                                           const QString &file, LoadProblem *problem)
{
    if (store.GetLoadReport().refusal)
        return QMap<QString, QString>();
    if (file.isEmpty())
        return DefaultLicenseCatalogue(store);
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

} // namespace ProductEditor
