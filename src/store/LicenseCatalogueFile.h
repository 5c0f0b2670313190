#pragma once

#include "ProductEditorExport.h"
#include "store/LoadReport.h"
#include "store/VantixJsonData.h"

#include <QMap>
#include <QString>

#include <optional>

namespace ProductEditor {

// The license catalogue of a store that has just loaded: the catalogue file's (a JSON
// object of license key to display text; a value that is not a string shows the key),
// or without a file every license the definitions use; empty for a refused folder. None
// when the file cannot be read, does not parse or holds no object: `problem` says why.
PRODUCT_EDITOR_EXPORT std::optional<QMap<QString, QString>>
LoadLicenseCatalogue(VantixJsonData &store, const Reader &reader, const QString &file, LoadProblem *problem);

} // namespace ProductEditor
