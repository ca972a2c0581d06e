// What a run needs while the left column is hidden: sign, Program, Stop, progress, counter, the last message and the
// way back.
#pragma once

#include "shell/qt/maker.h"

namespace kvr::window {

// The widgets are named as those of the left column, with "strip_" before.
QWidget* makeRunStrip(const Maker& maker);

}  // namespace kvr::window
