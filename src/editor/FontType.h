#pragma once

#include <QMetaType>

// The host's font-type enumeration. The window only stores a value of it on its
// labels for the host's style engine, so a stand-in with the host's name keeps
// the meta type the host looks for.
namespace Vantix {
namespace UI {
namespace Fonts {

enum FontType : int {};

} // namespace Fonts
} // namespace UI
} // namespace Vantix

// Registered under "Vantix::UI::Fonts::FontType" on the first qMetaTypeId call.
Q_DECLARE_METATYPE(Vantix::UI::Fonts::FontType)
