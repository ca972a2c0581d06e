#include "platform/qt/qt_loop.h"

#include <QApplication>
#include <QTimer>
#include <ctime>

#include "tests/platform/loop_contract.h"

namespace kvr::platform {
namespace {

struct RealTime {
  EventLoop& loop() { return loop_; }
  QtLoop loop_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, LoopContract, RealTime);

TEST(QtLoop, AWaitSleepsInsteadOfPollingWithATimerArmedOrNone) {
  QtLoop loop;
  const std::clock_t before = std::clock();
  delay(loop, Millis(700));
  bool pressed = false;
  QTimer::singleShot(300, qApp, [&] { loop.post([&] { pressed = true; }); });
  while (!pressed) loop.runOnce();
  EXPECT_LT(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC, 0.03);
}

// An idle application dispatches what is ready, and a sequence that was started by a timer must still hear that timer's
// fellows and Qt's own events.
TEST(QtLoop, ASequenceStartedFromTheIdleLoopHearsBytesLaterTimersAndGestures) {
  QtLoop loop;
  std::string order;
  PortEvent bytes(loop, [&] { order += "b"; });
  Timer later(loop, [&] { order += "l"; });
  Timer starter(loop, [&] {
    later.start(Millis(5));
    QTimer::singleShot(10, qApp, [&] { loop.post([&] { order += "g"; }); });
    while (order.size() < 3) loop.runOnce();
    order += "s";
    EXPECT_TRUE(loop.busy());
    loop.whenIdle([&] {
      order += loop.busy() ? "?" : "i";
      QApplication::quit();
    });
  });
  QTimer::singleShot(0, qApp, [&] {
    starter.start(Millis(1));
    bytes.raise();
  });
  QApplication::exec();
  EXPECT_EQ(order, "blgsi");
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
