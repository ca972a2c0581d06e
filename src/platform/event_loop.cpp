#include "platform/event_loop.h"

#include <algorithm>

namespace kvr::platform {

void EventLoop::runOnce() {
  if (dispatchOne()) return;
  sleepUntil(nextTimer());
  dispatchOne();
}

bool EventLoop::dispatchReady() {
  bool any = false;
  while (dispatchOne()) any = true;
  return any;
}

std::optional<Instant> EventLoop::nextTimer() const {
  if (timers_.empty()) return std::nullopt;
  return timers_.begin()->due;
}

bool EventLoop::somethingReady() const {
  return !portEvents_.empty() || !gestures_.empty() || (!timers_.empty() && timers_.begin()->due <= now());
}

void EventLoop::post(std::function<void()> gesture) {
  gestures_.push_back(std::move(gesture));
  scheduleChanged();
}

// Everything is taken out of its queue before its handler runs, since the handler may run turns of its own.
bool EventLoop::dispatchOne() {
  if (!portEvents_.empty()) {
    PortEvent* event = portEvents_.front();
    portEvents_.pop_front();
    event->pending_ = false;
    const auto handler = event->handler_;
    handler();
    return true;
  }
  if (!timers_.empty() && timers_.begin()->due <= now()) {
    timers_.begin()->timer->fire();
    return true;
  }
  if (!gestures_.empty()) {
    const auto gesture = std::move(gestures_.front());
    gestures_.pop_front();
    gesture();
    return true;
  }
  return false;
}

Timer::Timer(EventLoop& loop, std::function<void()> onTick, Kind kind)
    : loop_(loop), onTick_(std::move(onTick)), kind_(kind) {}

Timer::~Timer() {
  stop();
}

void Timer::start() {
  arm(loop_.now() + interval_);
}

void Timer::start(Millis interval) {
  interval_ = interval;
  start();
}

void Timer::arm(Instant due) {
  stop();
  due_ = due;
  order_ = ++loop_.armings_;
  active_ = true;
  loop_.timers_.insert({due_, order_, this});
  loop_.scheduleChanged();
}

void Timer::stop() {
  if (!active_) return;
  loop_.timers_.erase({due_, order_, this});
  active_ = false;
}

// A periodic timer keeps its beat; ticks that a long handler has swallowed are not made up for.
void Timer::fire() {
  const Instant due = due_;
  stop();
  if (kind_ == Kind::Periodic) arm(std::max<Instant>(due + interval_, loop_.now() + Millis(1)));
  const auto handler = onTick_;
  if (handler) handler();
}

PortEvent::PortEvent(EventLoop& loop, std::function<void()> handler) : loop_(loop), handler_(std::move(handler)) {}

PortEvent::~PortEvent() {
  withdraw();
}

void PortEvent::raise() {
  if (pending_) return;
  pending_ = true;
  loop_.portEvents_.push_back(this);
  loop_.scheduleChanged();
}

void PortEvent::withdraw() {
  if (!pending_) return;
  pending_ = false;
  std::erase(loop_.portEvents_, this);
}

void delay(EventLoop& loop, Millis time) {
  if (time.count() <= 0) return;
  Timer timer(loop);
  timer.start(time);
  while (timer.isActive()) loop.runOnce();
}

}  // namespace kvr::platform
