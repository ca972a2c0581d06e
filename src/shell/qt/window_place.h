// The window's place between runs, in the form's unit: 15 twips to a pixel of a plain screen.
#pragma once

#include <QWidget>

#include "shell/settings.h"

namespace kvr::window {

shell::WindowPlace placeOf(const QWidget& window);
// Puts the window where `place` says when its head then lies on a screen; the default place, which no run has saved,
// gives a size that suits the screen.
void placeWindow(QWidget& window, const shell::WindowPlace& place);

}  // namespace kvr::window
