// The window's place between runs, in the form's unit: 15 twips to a pixel of a plain screen.
#pragma once

#include <QList>
#include <QRect>
#include <QWidget>

#include "shell/settings.h"

namespace kvr::window {

shell::WindowPlace placeOf(const QWidget& window);
// Puts the window at `place`, moved and cut so that all of it is on a screen. A place on no screen, and the default
// place, which no run has saved, give a size that suits the main screen.
void placeWindow(QWidget& window, const shell::WindowPlace& place);

// Where a window that was at `wanted` goes. `screens`: their free areas. Empty: on none of them.
QRect reachablePlace(const QRect& wanted, const QList<QRect>& screens);

}  // namespace kvr::window
