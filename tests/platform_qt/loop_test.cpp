#include "platform/qt/qt_loop.h"

#include <sys/resource.h>
#include <QApplication>
#include <QTimer>

#include "tests/platform/loop_contract.h"

namespace kvr::platform {
namespace {

struct RealTime {
  EventLoop& loop() { return loop_; }
  QtLoop loop_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, LoopContract, RealTime);

double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

TEST(QtLoop, AWaitSleepsInsteadOfPollingWithATimerArmedOrNone) {
  QtLoop loop;
  const double before = cpuSeconds();
  delay(loop, Millis(700));
  bool pressed = false;
  QTimer::singleShot(300, qApp, [&] { loop.post([&] { pressed = true; }); });
  while (!pressed) loop.runOnce();
  EXPECT_LT(cpuSeconds() - before, 0.03);
}

TEST(QtLoop, AnIdleApplicationDispatchesWhatIsReady) {
  QtLoop loop;
  std::string order;
  Timer timer(loop, [&] { order += "t"; });
  PortEvent bytes(loop, [&] { order += "b"; });
  QTimer::singleShot(0, qApp, [&] {
    timer.start(Millis(10));
    bytes.raise();
  });
  QTimer::singleShot(60, qApp, [&] {
    loop.post([&] {
      order += "g";
      QApplication::quit();
    });
  });
  QApplication::exec();
  EXPECT_EQ(order, "btg");
}

// A sequence that was started by a timer must still hear that timer's fellows and Qt's own events.
TEST(QtLoop, ASequenceStartedFromTheIdleLoopHearsLaterTimersAndGestures) {
  QtLoop loop;
  std::string order;
  Timer later(loop, [&] { order += "l"; });
  Timer starter(loop, [&] {
    later.start(Millis(5));
    QTimer::singleShot(10, qApp, [&] { loop.post([&] { order += "g"; }); });
    while (order.size() < 2) loop.runOnce();
    order += "s";
    EXPECT_TRUE(loop.busy());
    loop.whenIdle([&] {
      order += loop.busy() ? "?" : "i";
      QApplication::quit();
    });
  });
  starter.start(Millis(1));
  QApplication::exec();
  EXPECT_EQ(order, "lgsi");
}

// Qt handles what was queued at the head of a turn and may then go to sleep: the gesture must not wait that long.
TEST(QtLoop, AGestureQueuedByAQueuedEventIsNotSleptOver) {
  QtLoop loop;
  bool pressed = false;
  QMetaObject::invokeMethod(
      qApp, [&] { loop.post([&] { pressed = true; }); }, Qt::QueuedConnection);
  const Instant start = loop.now();
  Timer limit(loop, [&] { pressed = true; });
  limit.start(Millis(1000));
  while (!pressed) loop.runOnce();
  EXPECT_LT(loop.now() - start, Millis(500));
}

}  // namespace
}  // namespace kvr::platform
