// What every event loop promises; run against each world. A world type has `EventLoop& loop()`.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/event_loop.h"

namespace kvr::platform {

template <class World>
class LoopContract : public ::testing::Test {
 protected:
  World world;
  EventLoop& loop = world.loop();
};
TYPED_TEST_SUITE_P(LoopContract);

TYPED_TEST_P(LoopContract, BytesGoBeforeTimersAndTimersBeforeGestures) {
  std::string order;
  PortEvent bytes(this->loop, [&] { order += "b"; });
  Timer second(this->loop, [&] { order += "2"; });
  Timer first(this->loop, [&] { order += "1"; });
  this->loop.post([&] { order += "g"; });
  second.start(Millis(0));
  first.start(Millis(0));
  bytes.raise();
  while (order.size() < 4) this->loop.runOnce();
  EXPECT_EQ(order, "b21g");
}

TYPED_TEST_P(LoopContract, TimersComeByTheirTimeAndNeverEarly) {
  std::string order;
  const Instant start = this->loop.now();
  Timer late(this->loop, [&] {
    order += "l";
    EXPECT_GE(this->loop.now() - start, Millis(30));
  });
  Timer early(this->loop, [&] {
    order += "e";
    EXPECT_GE(this->loop.now() - start, Millis(12));
  });
  Timer never(this->loop, [&] { order += "n"; });
  late.start(Millis(30));
  early.start(Millis(12));
  never.start(Millis(20));
  never.stop();
  while (order.size() < 2) this->loop.runOnce();
  EXPECT_EQ(order, "el");
}

TYPED_TEST_P(LoopContract, ASequenceInAHandlerHearsBytesTimersAndGestures) {
  std::string heard;
  PortEvent bytes(this->loop, [&] { heard += "b"; });
  Timer inner(this->loop, [&] {
    heard += "t";
    bytes.raise();
    this->loop.post([&] { heard += "g"; });
  });
  bool ended = false;
  this->loop.post([&] {
    inner.start(Millis(5));
    while (heard.size() < 3) this->loop.runOnce();
    ended = true;
  });
  while (!ended) this->loop.runOnce();
  EXPECT_EQ(heard, "tbg");
}

TYPED_TEST_P(LoopContract, AnInnerDelayLeavesTheOuterOneItsLength) {
  Timer trigger(this->loop, [&] { delay(this->loop, Millis(5)); });
  const Instant start = this->loop.now();
  trigger.start(Millis(2));
  delay(this->loop, Millis(40));
  EXPECT_GE(this->loop.now() - start, Millis(40));
}

TYPED_TEST_P(LoopContract, APeriodicTimerKeepsItsBeatAndCanStopItself) {
  int ticks = 0;
  const Instant start = this->loop.now();
  Timer beat(this->loop, {}, Timer::Kind::Periodic);
  beat.onTick([&] {
    if (++ticks == 10) beat.stop();
  });
  beat.start(Millis(7));
  while (beat.isActive()) this->loop.runOnce();
  EXPECT_EQ(ticks, 10);
  EXPECT_GE(this->loop.now() - start, Millis(70));
  EXPECT_LT(this->loop.now() - start, Millis(170));
}

TYPED_TEST_P(LoopContract, AWithdrawnEventAndADestroyedTimerNeverComeAndOneRaisedTwiceComesOnce) {
  std::string order;
  PortEvent gathered(this->loop, [&] { order += "g"; });
  PortEvent bytes(this->loop, [&] { order += "b"; });
  gathered.raise();
  gathered.raise();
  bytes.raise();
  bytes.raise();
  bytes.withdraw();
  {
    Timer gone(this->loop, [&] { order += "t"; });
    gone.start(Millis(1));
  }
  delay(this->loop, Millis(10));
  EXPECT_EQ(order, "g");
}

REGISTER_TYPED_TEST_SUITE_P(LoopContract, BytesGoBeforeTimersAndTimersBeforeGestures,
                            TimersComeByTheirTimeAndNeverEarly, ASequenceInAHandlerHearsBytesTimersAndGestures,
                            AnInnerDelayLeavesTheOuterOneItsLength, APeriodicTimerKeepsItsBeatAndCanStopItself,
                            AWithdrawnEventAndADestroyedTimerNeverComeAndOneRaisedTwiceComesOnce);

}  // namespace kvr::platform
