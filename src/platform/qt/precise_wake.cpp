#include "platform/qt/precise_wake.h"

#include <QSocketNotifier>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

namespace kvr::platform {

void PreciseWake::fallBack(std::chrono::microseconds delay) {
  using std::chrono::milliseconds;
  if (timer_ != 0) killTimer(timer_);
  timer_ = startTimer(std::chrono::ceil<milliseconds>(std::max(delay, std::chrono::microseconds(0))), Qt::PreciseTimer);
}

void PreciseWake::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_) return;
  killTimer(std::exchange(timer_, 0));
  ring_();
}

}  // namespace kvr::platform
