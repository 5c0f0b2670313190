#pragma once

#include "ProductEditorExport.h"
#include "check/Diagnostic.h"
#include "store/RecordsSnapshot.h"
#include "store/VantixJsonData.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace ProductEditor {

// The findings of an editor's folder: those about its files as last read or written,
// and those about the records as they are now, which replace the files' findings of
// the same kinds (names nothing defines, licenses missing from the catalogue, files
// a save would rewrite). Needs no window and touches no store of the caller's, so it
// can run on another thread.
struct PRODUCT_EDITOR_EXPORT LiveFindings
{
    Diagnostics files;                 // of the files, against `catalogue`
    QMap<QString, QString> catalogue;
    Diagnostics all;

    // `previous` from an earlier run when only the records changed; null to check the files.
    static LiveFindings Run(const Reader &reader, const QString &folder, const RecordsSnapshot &records,
                            const QMap<QString, QStringList> &layoutFiles, const LiveFindings *previous);
};

} // namespace ProductEditor
