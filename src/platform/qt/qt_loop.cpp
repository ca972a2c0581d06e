#include "platform/qt/qt_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

namespace kvr::platform {
namespace {

constexpr int kWakeEvent = QEvent::User + 71;
// Qt sleeps for more events only while some timer is armed to wake it.
constexpr std::chrono::milliseconds kLongestSleep{60'000};
// Handlers run in a row before Qt gets its turn for painting and input.
constexpr int kDispatchBurst = 64;

}  // namespace

QtLoop::QtLoop() {
  startTimer(kLongestSleep, Qt::CoarseTimer);
}

Instant QtLoop::now() const {
  return std::chrono::duration_cast<Instant>(std::chrono::steady_clock::now().time_since_epoch());
}

void QtLoop::whenIdle(std::function<void()> action) {
  idleActions_.push_back(std::move(action));
  postWake();
}

void QtLoop::sleepUntil(std::optional<Instant> due) {
  ++depth_;  // what Qt delivers during the sleep is only queued; this turn's caller dispatches it
  armWake(due);
  asleep_ = true;
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  asleep_ = false;
  --depth_;
  if (depth_ == 0 && somethingReady()) postWake();
}

void QtLoop::armWake(std::optional<Instant> due) {
  if (due) wake_.start(std::clamp(*due - now(), Instant(0), Instant(kLongestSleep)));
}

// Qt may go on to sleep after it has delivered what was queued here; the posted event keeps it awake.
void QtLoop::scheduleChanged() {
  if (depth_ == 0 || asleep_) postWake();
}

void QtLoop::postWake() {
  if (wakePosted_) return;
  wakePosted_ = true;
  QCoreApplication::postEvent(this, new QEvent(static_cast<QEvent::Type>(kWakeEvent)));
}

bool QtLoop::event(QEvent* event) {
  if (event->type() != kWakeEvent) return QObject::event(event);
  wakePosted_ = false;
  if (depth_ == 0) dispatchIdle();
  return true;
}

void QtLoop::dispatchIdle() {
  ++depth_;
  int count = 0;
  while (count < kDispatchBurst && dispatchOne()) ++count;
  --depth_;
  if (count == kDispatchBurst) return postWake();
  armWake(nextTimer());
  const auto actions = std::move(idleActions_);
  idleActions_.clear();
  for (const auto& action : actions) action();
}

}  // namespace kvr::platform
