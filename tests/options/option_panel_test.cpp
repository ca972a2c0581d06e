#include <gtest/gtest.h>

#include "options/option_panel.h"
#include "options/ui_lock.h"

namespace kvr::options {
namespace {

TEST(UiLock, ARunNeverLosesTheOperatorsLock) {
  UiLock lock;
  int told = 0;
  lock.changed.connect([&] { ++told; });
  for (const auto& [start, busy] : {std::pair{0, 1}, std::pair{2, 3}}) {
    lock.set(start);
    lock.toBusy();
    lock.toBusy();
    EXPECT_EQ(lock.state(), busy);
    EXPECT_TRUE(lock.busy());
    lock.toFree();
    lock.toFree();
    EXPECT_EQ(lock.state(), start);
    EXPECT_FALSE(lock.busy());
  }
  lock.set(4);
  EXPECT_EQ(lock.state(), 2);
  EXPECT_EQ(told, 10);
}

TEST(OptionPanel, ButtonsOfALineExcludeEachOtherAndNoOthers) {
  OptionPanel panel;
  panel.Option3[2].setValue(true);
  panel.Option4[1].setValue(true);
  panel.Option3[0].setValue(true);
  EXPECT_FALSE(panel.Option3[2].value());
  EXPECT_TRUE(panel.Option4[1].value());
  EXPECT_EQ(panel.optionButtons(3).size(), 3u);
  EXPECT_EQ(panel.find("Option13", 1), &panel.Option13[1]);
  EXPECT_EQ(panel.find("Option0", 2), nullptr);
}

TEST(OptionPanel, OffersPinsAndFrequencies) {
  EXPECT_EQ(pinNames().size(), 36u);
  EXPECT_EQ(pinNames().front(), "P0.0");
  EXPECT_EQ(pinNames().back(), "P4.3");
  EXPECT_EQ(frequencyChoices().size(), 53u);
}

}  // namespace
}  // namespace kvr::options
