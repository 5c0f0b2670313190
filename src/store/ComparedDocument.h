#pragma once

#include "ProductEditorExport.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace ProductEditor {

class VantixJsonData;

// One document as "Update" compares it: the loaded object on the left, the
// regenerated one on the right.
struct ComparedDocument
{
    QString name;
    QJsonObject left;
    QJsonObject right;
};

// The documents "Update" compares, in order: "Products", then each loaded layout by
// name. A layout with no regenerated object gets an empty one, inserted into the
// store's result map; layouts that exist only among the results are not compared.
PRODUCT_EDITOR_EXPORT QVector<ComparedDocument> UpdateComparedDocuments(VantixJsonData &data);

// The two products that "Compare products..." compares, found in one walk over the
// regenerated "product" array: the first element with the left id, and the first
// other element with the right id. A product not found is an empty object.
PRODUCT_EDITOR_EXPORT ComparedDocument ProductsToCompare(const QJsonObject &productsResult,
                                                         const QString &leftId, const QString &rightId);

} // namespace ProductEditor
