// One alarm, to the microsecond where the system has such a thing (Qt's own timers know whole milliseconds, and half a
// millisecond a wait adds up over the thousands of short waits of a download).
#pragma once

#include <QObject>
#include <chrono>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace kvr::platform {

class PreciseWake : public QObject {
 public:
  // `ring` runs in Qt's loop.
  explicit PreciseWake(std::function<void()> ring);
  ~PreciseWake() override;
  // Rings once, so long from now on; a second start takes the first one back.
  void start(std::chrono::microseconds delay);

 private:
  void fallBack(std::chrono::microseconds delay);
  void timerEvent(QTimerEvent* event) override;
  std::function<void()> ring_;
  int timer_ = 0;    // Qt's, where there is no better one
  int handle_ = -1;  // the system's
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace kvr::platform
