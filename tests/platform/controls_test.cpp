#include <gtest/gtest.h>

#include "platform/controls.h"
#include "platform/text.h"

namespace kvr::platform {
namespace {

TEST(Controls, AGestureNeedsAnEnabledControlAndCodeRunsNoHandler) {
  int clicks = 0;
  int changes = 0;
  CheckBox box("cheTL");
  box.onClick = [&] { ++clicks; };
  box.changed.connect([&] { ++changes; });
  box.setValue(true);
  EXPECT_EQ(clicks, 0);
  box.setEnabled(false);
  box.userSet(false);
  EXPECT_TRUE(box.value());
  box.setEnabled(true);
  box.userSet(false);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(changes, 4);
}

TEST(Signals, AHandlerMayAddAndEndObserversAndTheSignalItself) {
  std::string order;
  auto signal = std::make_unique<Signal>();
  std::vector<Signal::Token> tokens;
  Signal::Token second;
  tokens.push_back(signal->watch([&] {
    order += "1";
    second.reset();
    for (int i = 0; i < 50; ++i) tokens.push_back(signal->watch([&] { order += "n"; }));
  }));
  second = signal->watch([&] { order += "2"; });
  tokens.push_back((*signal).watch([&] {
    order += "3";
    signal.reset();
  }));
  signal->emit();
  EXPECT_EQ(order, "13");
}

TEST(Text, NumbersReadAsFarAsTheyGo) {
  EXPECT_EQ(valueOf("  -12.5e1x"), -125);
  EXPECT_EQ(valueOf(".5"), 0.5);
  EXPECT_EQ(valueOf("6.3"), 6.3);
  EXPECT_EQ(valueOf("12e"), 12);
  EXPECT_EQ(valueOf("abc"), 0);
  EXPECT_EQ(valueOf("-"), 0);
  for (const char* tiny : {"1e-999", "1E-400", "-1e-999"}) EXPECT_EQ(valueOf(tiny), 0) << tiny;
  EXPECT_EQ(valueOf("0.000e999"), 0);
  EXPECT_EQ(wholeOf("1e999"), 2147483647);
  EXPECT_EQ(wholeOf("-1e999"), -2147483647 - 1);
  EXPECT_EQ(wholeOf("99999999999"), 2147483647);
  EXPECT_EQ(numberText(11059200 / 1e6), "11.0592");
  EXPECT_EQ(numberText(0), "0");
  EXPECT_EQ(hexOf("FFFFx"), 0xFFFFu);
  EXPECT_EQ(padLeft("1", 4), "0001");
  EXPECT_EQ(padLeft("12345", 4), "2345");
  EXPECT_EQ(roundEven(2.5), 2);
  EXPECT_EQ(floorOf(-0.5), -1);
}

}  // namespace
}  // namespace kvr::platform
