#pragma once

#include "ProductEditorExport.h"
#include "store/RecordsSnapshot.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

namespace ProductEditor {

// The records that a products document and layout objects (by layout name) decode to,
// as a load reads them; the snapshot keeps the documents as its loaded ones. What a
// folder held when it was loaded, or what a save of the records would hold when read
// back, without touching the disk.
PRODUCT_EDITOR_EXPORT RecordsSnapshot DecodeRecords(const QJsonObject &products,
                                                    const QMap<QString, QJsonObject> &layouts,
                                                    const QMap<QString, QString> &licenses);

// The same, with the products document read straight from its text, as a load of a
// large folder reads it beside the parse; nothing when the reading leaves the text to
// the parser. The records must be those DecodeRecords gives for the parsed text.
PRODUCT_EDITOR_EXPORT std::optional<RecordsSnapshot> DecodeRecordsFromText(const QByteArray &productsText,
                                                                           const QMap<QString, QJsonObject> &layouts,
                                                                           const QMap<QString, QString> &licenses);

} // namespace ProductEditor
