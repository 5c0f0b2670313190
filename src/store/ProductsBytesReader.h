#pragma once

#include "store/ProductsParts.h"

#include <QByteArray>

#include <future>
#include <optional>

namespace ProductEditor {

// Reads the products document straight from its text into its parts, the same parts
// the parsed document gives, so that the reading can run beside the parse. False
// when the text holds something it leaves to the parser (an escape or a non-ASCII
// character in a wanted string or in any key, or a wanted key twice in one object);
// the parts are then to be read from the parsed document instead.
bool ReadProductsBytes(const QByteArray &bytes, ProductsParts &parts);

// The same on a second thread, when there is a second core; nothing when it gave up.
std::future<std::optional<ProductsParts>> ReadProductsBytesAside(const QByteArray &bytes);

} // namespace ProductEditor
