#include "store/DocumentRecords.h"

#include "store/ProductsBytesReader.h"

#include <QJsonDocument>

namespace ProductEditor {

RecordsSnapshot DecodeRecords(const QJsonObject &products, const QMap<QString, QJsonObject> &layouts,
                              const QMap<QString, QString> &licenses)
{
    // A store with no folder: UpdateData decodes whatever documents it is given.
    VantixJsonData data(QString(), Reader(), Writer(), licenses);
    data.GetProductsOriginalJson() = products;
    data.GetLayoutsOriginalJsons() = layouts;
    data.UpdateData();
    return RecordsSnapshot::Take(data);
}

std::optional<RecordsSnapshot> DecodeRecordsFromText(const QByteArray &productsText,
                                                    const QMap<QString, QJsonObject> &layouts,
                                                    const QMap<QString, QString> &licenses)
{
    ProductsParts parts;
    if (!ReadProductsBytes(productsText, parts))
        return std::nullopt;
    VantixJsonData data(QString(), Reader(), Writer(), licenses);
    data.GetProductsOriginalJson() = QJsonDocument::fromJson(productsText).object();
    data.GetLayoutsOriginalJsons() = layouts;
    ApplyProductsParts(std::move(parts), ReadLayoutParts(layouts), data.GetFeatures(), data.GetProducts(),
                       data.GetLayouts(), data.GetExtensions());
    return RecordsSnapshot::Take(data);
}

} // namespace ProductEditor
