// Work that must have the window for itself: while a file dialog or a question stands open, no watcher, run or second
// dialog may start. The window supplies the guard; unconnected, the work just runs.
#pragma once

#include <functional>

namespace kvr::images {

// Runs the work, or answers false when something else is under way and nothing was done.
using Alone = std::function<bool(const std::function<void()>& work)>;

inline bool runAlone(const Alone& alone, const std::function<void()>& work) {
  if (alone) return alone(work);
  work();
  return true;
}

}  // namespace kvr::images
