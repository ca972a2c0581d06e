#include <QSocketNotifier>
#include <utility>

#include "platform/qt/precise_wake.h"

namespace kvr::platform {

PreciseWake::PreciseWake(std::function<void()> ring) : ring_(std::move(ring)) {}

PreciseWake::~PreciseWake() = default;

void PreciseWake::start(std::chrono::microseconds delay) {
  fallBack(delay);
}

}  // namespace kvr::platform
