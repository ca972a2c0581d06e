// A button that opens a small window with settings below it: what is rarely changed takes no room on the page.
#pragma once

#include <QPushButton>

namespace kvr::window {

// The popup closes with Esc and with a click outside of it. It takes `content`, whose widgets work at once.
QPushButton* popupButton(const QString& caption, const QString& name, QLayout* content);

}  // namespace kvr::window
