#pragma once

#include "store/FeatureRecordsBuilder.h"
#include "store/VantixJsonData.h"

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

#include <vector>

namespace ProductEditor {

// What the layout objects hold, read before the products document's parts are in:
// each layout's extension access, and the features each one names.
struct LayoutParts
{
    QMap<QString, LayoutData> layouts;
    QVector<QString> names;                       // in the layouts' order
    std::vector<FeatureRecordsBuilder::PreparedIds> featureIds; // by the position of the name
};

LayoutParts ReadLayoutParts(const QMap<QString, QJsonObject> &layoutsOriginal);

} // namespace ProductEditor
