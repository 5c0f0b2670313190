#include "store/DocumentRecords.h"

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

} // namespace ProductEditor
