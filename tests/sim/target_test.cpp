#include "sim/target.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(TargetOptions, TakeWhatIsSoundAndNameWhatIsNot) {
  const ParsedOptions good =
      parseTargetOptions({"--model", "Gum-H20", "--letter", "G", "--firmware", "5.7", "--firmware", "echo", "--fault",
                          "failsBlock=3:2", "--fault", "silentErase", "--line", "9600,e,8,1", "--paced"});
  EXPECT_EQ(good.error, "");
  EXPECT_EQ(good.options.firmware, 0x57);
  EXPECT_EQ(good.options.application, "echo");
  EXPECT_EQ(good.options.faults.size(), 2U);
  EXPECT_EQ(good.options.applicationLine, (Line{9600, 'e'}));
  EXPECT_TRUE(good.options.paced);
  using Arguments = std::vector<std::string_view>;
  for (const Arguments& bad : {Arguments{"--nonsense"}, Arguments{"--model"}, Arguments{"--chips", "0"},
                               Arguments{"--firmware", "63"}, Arguments{"--line", "9600,x,8,1"}})
    EXPECT_NE(parseTargetOptions(bad).error, "");
  EXPECT_EQ(Target({.model = "Ivy-H99"}, 0).error(), "no model Ivy-H99");
  EXPECT_EQ(Target({.faults = {{"noSuchFault", ""}}}, 0).error(), "no fault noSuchFault");
}

// Calls the chip, and releases it as soon as it has said who it is.
void callAndRelease(Target& target, Micros& now) {
  target.wire().assumeHostLine({9600, 'e'});
  if (!target.wire().isOpen()) target.wire().open({9600, 'e'}, now);
  for (int i = 0; i < 400 && target.wire().available(now) == 0; ++i) {
    target.wire().write(Bytes{0x7F, 0x7F}, now);
    target.advanceTo(now += 10 * kMillisecond);
  }
  target.advanceTo(now += 300 * kMillisecond);
  target.wire().take(now);
  target.wire().write(Bytes{0x46, 0xB9, 0x6A, 0, 7, 0x82, 0, 0xF3, 0x16}, now);
  target.advanceTo(now += 50 * kMillisecond);
}

TEST(Target, PutsFreshChipsInAndEndsAfterTheLast) {
  TargetOptions options;
  options.paced = true;
  options.powerOnSeconds = 1;
  options.powerCycleSeconds = 2;
  options.chips = 2;
  options.once = true;
  Micros now = 5 * kSecond;
  Target target(options, now);
  EXPECT_EQ(target.nextDue(), 6 * kSecond);
  EXPECT_TRUE(target.takeReportDue());
  EXPECT_FALSE(target.takeReportDue());
  callAndRelease(target, now);
  EXPECT_GT(now, 6 * kSecond);
  EXPECT_EQ(target.current().releases(), 1);
  EXPECT_TRUE(target.takeReportDue());
  EXPECT_FALSE(target.ended());
  target.advanceTo(now += 4 * kSecond);
  EXPECT_EQ(target.current().releases(), 0);
  EXPECT_NE(target.report().find("\"earlier\": ["), std::string::npos);
  callAndRelease(target, now);
  EXPECT_TRUE(target.ended());
}

TEST(Target, CyclesThePowerOfAChipThatWasLeftInTheMiddle) {
  TargetOptions options;
  options.powerCycleSeconds = 1;
  Micros now = 0;
  Target target(options, now);
  target.wire().open({9600, 'e'}, now);
  target.wire().write(Bytes(10, 0x7F), ++now);
  target.advanceTo(now += kSecond);
  EXPECT_TRUE(target.current().inSession());
  target.advanceTo(now += 11 * kSecond);
  target.advanceTo(now += kSecond);  // power goes
  target.advanceTo(now += kSecond);  // and comes back
  EXPECT_FALSE(target.current().inSession());
  EXPECT_NE(target.report().find("\"state\": \"syncing\""), std::string::npos);
}

}  // namespace
}  // namespace sim
