#pragma once

#include "ProductEditorExport.h"

#include <QMap>
#include <QString>

namespace ProductEditor {

class VantixJsonData;

// Every license name the loaded definitions use (base, specific and coverage), each
// shown as itself: the catalogue of a host that has no catalogue of its own.
PRODUCT_EDITOR_EXPORT QMap<QString, QString> DefaultLicenseCatalogue(VantixJsonData &store);

} // namespace ProductEditor
