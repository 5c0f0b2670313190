#pragma once

namespace ProductEditor {

// The pages of the window's tab widget, in tab order.
namespace TabIndex {
enum : int { Features, Extensions, Products, Changes, Query, Result };
} // namespace TabIndex

} // namespace ProductEditor
