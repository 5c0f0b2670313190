#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QString>

namespace ProductEditor {

// JSON text, and the text the trees show for a plain value, as Qt 5.15 writes them.
// Qt 6 writes some numbers otherwise (integers past 2^53 exactly, very large and very
// small ones in other notations); what the program writes must not depend on the Qt
// it was built with.
PRODUCT_EDITOR_EXPORT QByteArray JsonText(const QJsonDocument &document, QJsonDocument::JsonFormat format);
PRODUCT_EDITOR_EXPORT QString JsonValueText(const QJsonValue &value);

} // namespace ProductEditor
