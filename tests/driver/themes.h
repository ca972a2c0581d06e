// The looks that a desktop may have, for pictures and for tests.
#pragma once

#include <QPalette>
#include <QString>

namespace kvr::window {

// "light", "dark", "contrast" (bright on black); anything else is light.
QPalette themeOf(const QString& name);
// The whole program in that look, drawn in Qt's own style; also while its window is open.
void useTheme(const QString& name);

}  // namespace kvr::window
