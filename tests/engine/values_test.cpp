// What a run decides before it sends: rates and plans, as values; and what it hears.
#include <gtest/gtest.h>

#include "engine/baud_plan.h"
#include "engine/image_plan.h"
#include "engine/rc_plan.h"
#include "engine/receiver.h"

namespace kvr::engine {
namespace {

using catalogue::Family;
using catalogue::FirmwareVersion;

TEST(Receiver, DropsNoiseBadEndsAndBadSums) {
  const Bytes frame = {0x46, 0xB9, 0x68, 0, 9, 0x80, 0x11, 0x22, 0x33, 0x57, 0x16};
  Bytes noisy = {0x00, 0x46, 0x46};
  noisy.insert(noisy.end(), frame.begin() + 1, frame.end());
  Receiver rx;
  rx.armed = rx.requireStartPair = true;
  rx.take(noisy);
  EXPECT_TRUE(rx.frameOk) << "46 after 46 is a new first byte";
  rx.clear();
  Bytes badEnd = frame;
  badEnd.back() = 0x17;
  rx.take(badEnd);
  EXPECT_FALSE(rx.frameOk || rx.frameBad);
  EXPECT_EQ(rx.count, 0);
  Bytes badSum = frame;
  badSum[7] ^= 1;
  rx.take(badSum);
  EXPECT_TRUE(rx.frameBad && !rx.frameOk);
  rx.take(Bytes{0x46, 0xB9, 0x68, 0x00, 0x00});
  EXPECT_EQ(rx.count, 0) << "a length of zero empties the buffer";
  rx.take(frame);
  const Bytes bare = {0x46, 0xB9, 0x68, 0, 6, 0x80, 0xEE, 0x16};
  rx.clear();
  rx.take(bare);
  EXPECT_TRUE(rx.frameOk);
  EXPECT_EQ(rx.reply()[6], 0) << "nothing of the longer frame before it";
  rx.clear();
  rx.armed = false;
  rx.take(frame);
  EXPECT_EQ(rx.count, 0);
}

TEST(BaudPlan, TakesTheHighestRateThatTheClockReaches) {
  const auto late = calculateBaud(traitsOf(Family::Ivy), 11059200, 100, 115200);
  EXPECT_EQ(late, (BaudChoice{11, 115200, 192, 6}));
  EXPECT_EQ(calculateBaud(traitsOf(Family::Ivy), 11059200, 100, 9600)->baud, 9600);
  EXPECT_EQ(calculateBaud(traitsOf(Family::Cedar), 11059200, 100, 115200), (BaudChoice{11, 115200, 0, 3}));
  EXPECT_EQ(calculateBaud(traitsOf(Family::Cedar), 7372800, 100, 115200)->baud, 57600) << "a count of 2 is too few";
  EXPECT_EQ(calculateBaud(traitsOf(Family::Cedar), 12000000, 11, 115200)->baud, 38400)
      << "115200 and 57600 are too far off";
  EXPECT_EQ(calculateBaud(traitsOf(Family::Ivy), 0, 100, 115200), std::nullopt);
  EXPECT_EQ(calculateBaud(traitsOf(Family::Ivy), 11059200, 0, 115200), std::nullopt);
  EXPECT_EQ(calculateBaud(traitsOf(Family::Ivy), 11059200, 100, 600), std::nullopt);
}

TargetInfo chip(char letter, FirmwareVersion version, const char* name) {
  TargetInfo target;
  target.stepping = letter;
  target.firmware = version;
  if (const auto* record = catalogue::findByName(name)) target.targetRecord = *record;
  return target;
}

TEST(ImagePlan, FitsTheImagesByLetterAndVersion) {
  struct Case {
    char letter;
    FirmwareVersion version;
    std::int32_t apEnd, codeEnd;
    bool chosen;
    ImageFit expected;
  };
  const Case cases[] = {
      {'D', {5, 6}, 4095, 5120, false, {{4096, 0x13FF, 4096, false, true, 0x13FF}, true}},
      {'E', {5, 0}, 4095, 12287, false, {{4096, 0x2FFF, 4096, false, true, 12287}, false}},
      {'E', {5, 8}, 10239, 100, false, {{12288, 0x6FFF, 101, true, false, 0x7000}, false}},
      {'E', {5, 8}, 16383, 100, false, {{16384, 0x6FFF, 101, false, false, 0x7000}, false}},
      {'I', {6, 3}, 16383, 100, true, {{20000, 30000, 101, true, false, 30001}, false}},
      {'B', {4, 3}, 1023, 100, true, {{20000, 30000, 101, false, false, 30001}, false}},
  };
  for (const Case& c : cases) {
    TargetInfo target = chip(c.letter, c.version, "");
    target.targetRecord.apEnd = c.apEnd;
    target.targetRecord.dataStart = c.letter == 'I' || c.letter == 'B' ? 20000 : 4096;
    target.targetRecord.dataEnd = 30000;
    EXPECT_EQ(fitImages(target, c.codeEnd, c.chosen), c.expected) << c.letter << c.version.text() << " " << c.apEnd;
  }
}

TEST(RcPlan, ChoosesBandsWindowsAndThePairNearestToTheWish) {
  EXPECT_EQ(roundOne(32, 7500000, true)[2], (RcRegisters{24, 0x80})) << "both lines in band 0";
  EXPECT_EQ(roundOne(32, 7501000, true)[2], (RcRegisters{64 + 24, 0}));
  RcLines lines{lineThrough({24, 0, 0, 5000000}, {24, 128, 0, 6280000}),
                lineThrough({24, 128, 0, 6280000}, {24, 255, 0, 7550000}),
                {}};
  const auto scan = roundTwo(lines, 7500000, 11);
  ASSERT_EQ(scan.size(), 11u);
  EXPECT_EQ(scan.front().fine, 245) << "predicted 250; the window ends at the register's end";
  EXPECT_EQ(roundTwo(lines, 7550000, 11).front().fine, 245) << "never beyond the register";
  RcResult result;
  const std::vector<RcPoint> points = {{24, 1, 0, 7481250}, {24, 2, 0, 7518750}, {24, 3, 0, 7600000}};
  chooseBest(points, 7500000, result);
  EXPECT_EQ(result.bestIndex, 0) << "the first of two that are equally near";
  EXPECT_EQ(baseSettings({}, 24000000, 57600)[1], 64) << "no line, no division by zero";
  EXPECT_EQ(lineThrough({24, 255, 0, 0}, {24, 254, 0, 2000000000}).offset, 510000000000) << "garbled counts";
}

}  // namespace
}  // namespace kvr::engine
