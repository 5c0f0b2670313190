#pragma once

#include "ProductEditorExport.h"
#include "check/Diagnostic.h"
#include "store/RecordsSnapshot.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace ProductEditor {

// The names in the records that nothing defines, as an editor's edits leave them:
// layouts of products (PE005), features of licensing entries (PE006), extensions of
// access lists (PE007) and licenses missing from the catalogue (PE008); and products
// that share an id (PE004). Feature membership needs no check: the features hold it. The records
// hold no positions: each finding names its file and the path a save writes it at,
// with line 0.
PRODUCT_EDITOR_EXPORT Diagnostics CheckRecords(const RecordsSnapshot &records, const QString &productsFile,
                                               const QMap<QString, QStringList> &layoutFiles);

} // namespace ProductEditor
