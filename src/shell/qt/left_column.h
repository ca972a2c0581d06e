// The left column: the steps of a download from the model to the verdict.
#pragma once

#include "shell/qt/maker.h"

namespace kvr::window {

// `window` is what the model list drops down in.
QWidget* makeLeftColumn(const Maker& maker, QWidget& window);

}  // namespace kvr::window
