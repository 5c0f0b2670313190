#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QJsonObject>
#include <QMap>
#include <QString>

namespace ProductEditor {

// The records a user can change, and the loaded documents that "Apply changes"
// patches. The containers are implicitly shared, so taking one costs a few
// reference counts; the store pays for the copy on its next write.
struct PRODUCT_EDITOR_EXPORT RecordsSnapshot
{
    static RecordsSnapshot Take(VantixJsonData &data);
    // Puts the records back; the caller tells the models.
    void Restore(VantixJsonData &data) const;

    // Cheap while nothing was written since the other was taken.
    bool operator==(const RecordsSnapshot &other) const;
    bool operator!=(const RecordsSnapshot &other) const { return !(*this == other); }

    QMap<QString, VantixFeatureData> features;
    VantixProducts products;
    QMap<QString, LayoutData> layouts;
    QMap<QString, QString> licenses;
    QMap<QString, ExtensionInfo> extensions;
    QJsonObject productsOriginal;
    QMap<QString, QJsonObject> layoutsOriginal;
};

} // namespace ProductEditor
