// Pictures of the window in all its states: every tab, every family's options. For people to look at; see
// scripts/shots.
#pragma once

#include <QString>
#include <functional>

#include "shell/qt/application.h"

namespace kvr::window {

// Takes the pictures one after another from the event loop and then calls `ended`. Their names begin with `prefix`.
void takeShots(Application& program, const QString& folder, const QString& prefix, std::function<void()> ended);

}  // namespace kvr::window
