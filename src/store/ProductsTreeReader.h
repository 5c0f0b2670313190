#pragma once

#include "store/ProductsParts.h"
#include "store/VantixJsonData.h"

#include <QCborMap>
#include <QJsonObject>

namespace ProductEditor {

// Reads the parsed products document into its parts, through CBOR views that share
// the parsed storage: a QJsonValue would copy every string and object it is asked for.
void ReadProductsTree(const QJsonObject &document, ProductsParts &parts);

// The six roles of an extension-access object; a missing role reads as empty.
ExtensionAccess ReadExtensionAccess(const QCborMap &object);

} // namespace ProductEditor
