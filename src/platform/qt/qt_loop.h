// The real world's event loop: the program's one thread, asleep in Qt's loop until a byte, a timer or a gesture comes.
//
// Two ways to be in it. A sequence that waits runs turns (`runOnce`), each at most one sleep in Qt. When nothing waits,
// the application idles in `QApplication::exec()`, and what is ready is dispatched from a queued event of this object;
// never from inside a slot of a QTimer or of a port, since such a slot is not called again while it is still running,
// and a sequence started in it would then wait for bytes whose event never comes.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "platform/event_loop.h"
#include "platform/qt/precise_wake.h"

namespace kvr::platform {

class QtLoop : public QObject, public EventLoop {
 public:
  QtLoop();
  Instant now() const override;

  // Runs `action` from the application's own loop when no handler and no wait is under way (at once, when that is now).
  void whenIdle(std::function<void()> action);
  // True while a handler runs, or a sequence waits in one.
  bool busy() const { return depth_ > 0; }

 protected:
  void sleepUntil(std::optional<Instant> due) override;
  void scheduleChanged() override;
  bool event(QEvent* event) override;

 private:
  void dispatchIdle();
  void postWake();
  void armWake(std::optional<Instant> due);
  PreciseWake wake_{[this] { postWake(); }};
  bool wakePosted_ = false;
  bool asleep_ = false;
  int depth_ = 0;
  std::vector<std::function<void()>> idleActions_;
};

}  // namespace kvr::platform
