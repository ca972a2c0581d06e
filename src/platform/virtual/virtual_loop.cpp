#include "platform/virtual/virtual_loop.h"

#include <algorithm>

namespace kvr::platform {

void VirtualLoop::removeSource(VirtualSource& source) {
  std::erase(sources_, &source);
}

void VirtualLoop::after(Millis time, std::function<void()> gesture) {
  const Instant when = now_ + time;
  const auto later = std::upper_bound(plans_.begin(), plans_.end(), when,
                                      [](Instant instant, const Plan& plan) { return instant < plan.when; });
  plans_.insert(later, {.when = when, .gesture = std::move(gesture)});
}

std::optional<Instant> VirtualLoop::nextOutside() const {
  std::optional<Instant> next;
  if (!plans_.empty()) next = plans_.front().when;
  for (const auto* source : sources_) {
    const auto due = source->nextDue();
    if (due && (!next || *due < *next)) next = due;
  }
  return next;
}

void VirtualLoop::advance(Instant to) {
  now_ = std::max(now_, to);
  for (std::size_t i = 0; i < sources_.size(); ++i) sources_[i]->advanceTo(now_);
  while (!plans_.empty() && plans_.front().when <= now_) {
    auto gesture = std::move(plans_.front().gesture);
    plans_.erase(plans_.begin());
    post(std::move(gesture));
  }
}

void VirtualLoop::sleepUntil(std::optional<Instant> due) {
  ++sleeps_;
  const auto outside = nextOutside();
  if (!due && !outside) throw StalledWorld();
  advance(!due ? *outside : outside ? std::min(*due, *outside) : *due);
}

bool VirtualLoop::runUntil(const std::function<bool()>& done, Millis limit) {
  const Instant end = now_ + limit;
  while (!done()) {
    if (dispatchReady()) continue;
    const auto outside = nextOutside();
    const auto timer = nextTimer();
    if (!outside && !timer) return false;
    const Instant next = !timer ? *outside : !outside ? *timer : std::min(*timer, *outside);
    if (next > end) {
      now_ = std::max(now_, end);
      return false;
    }
    ++sleeps_;
    advance(next);
  }
  return true;
}

void VirtualLoop::runFor(Millis time) {
  const Instant end = now_ + time;
  runUntil([] { return false; }, time);
  advance(end);
  dispatchReady();
}

}  // namespace kvr::platform
