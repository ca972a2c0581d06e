#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/qt/precise_wake.h"

namespace kvr::platform {

using std::chrono::microseconds;

PreciseWake::PreciseWake(std::function<void()> ring)
    : ring_(std::move(ring)), handle_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
  if (handle_ < 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(handle_, QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
    std::uint64_t rung = 0;
    if (::read(handle_, &rung, sizeof rung) == sizeof rung) ring_();
  });
}

PreciseWake::~PreciseWake() {
  notifier_.reset();  // before its handle goes
  if (handle_ >= 0) ::close(handle_);
}

void PreciseWake::start(microseconds delay) {
  if (handle_ < 0) return fallBack(delay);
  const auto us = std::max<microseconds::rep>(1, delay.count());  // a time of zero would take the alarm back
  itimerspec time{};
  time.it_value.tv_sec = us / 1'000'000;
  time.it_value.tv_nsec = us % 1'000'000 * 1000;
  if (timerfd_settime(handle_, 0, &time, nullptr) != 0) fallBack(delay);
}

}  // namespace kvr::platform
