#pragma once

#include "ProductEditorExport.h"
#include "check/ScannedDocument.h"
#include "store/LoadReport.h"

#include <QString>
#include <QVector>

namespace ProductEditor {

// What the loader quietly leaves out of the "layouts" folder: files it skips or that
// hold no "layouts" key (PE011), and entries that are not regular files (PE012).
PRODUCT_EDITOR_EXPORT Diagnostics CheckLayoutFolder(const QString &layoutsFolder, const LoadReport &report,
                                                    const QVector<const ScannedDocument *> &loaded);

} // namespace ProductEditor
