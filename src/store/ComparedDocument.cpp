#include "store/ComparedDocument.h"

#include "store/DefinitionKeys.h"
#include "store/VantixJsonData.h"

#include <QJsonArray>

namespace ProductEditor {

QVector<ComparedDocument> UpdateComparedDocuments(VantixJsonData &data)
{
    QVector<ComparedDocument> documents;
    documents.append({QStringLiteral("Products"), data.GetProductsOriginalJson(), data.GetProductsResultJson()});
    const QMap<QString, QJsonObject> &originals = data.GetLayoutsOriginalJsons();
    for (auto it = originals.constBegin(); it != originals.constEnd(); ++it)
        documents.append({it.key(), it.value(), data.GetLayoutsResultJsons()[it.key()]});
    return documents;
}

ComparedDocument ProductsToCompare(const QJsonObject &productsResult, const QString &leftId,
                                   const QString &rightId)
{
    ComparedDocument pair{leftId + QStringLiteral(" / ") + rightId, {}, {}};
    const QJsonArray products =
        productsResult.value(Keys::kProducts).toObject().value(Keys::kProduct).toArray();
    for (const QJsonValue value : products) {
        const QJsonObject product = value.toObject();
        const QString id = product.value(Keys::kId).toString();
        if (id == leftId)
            pair.left = product;
        else if (id == rightId)
            pair.right = product;
        if (!pair.left.isEmpty() && !pair.right.isEmpty())
            break;
    }
    return pair;
}

} // namespace ProductEditor
