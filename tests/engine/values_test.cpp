// What a run decides before it sends: frames, rates, plans and comparisons, as values.
#include <gtest/gtest.h>

#include "engine/baud_plan.h"
#include "engine/block_plan.h"
#include "engine/data_frames.h"
#include "engine/frames.h"
#include "engine/image_plan.h"
#include "engine/option_plan.h"
#include "engine/rc_plan.h"
#include "engine/receiver.h"
#include "engine/status_frame.h"

namespace kvr::engine {
namespace {

using catalogue::BaudPace;
using catalogue::Family;
using catalogue::FirmwareVersion;
using catalogue::OptionLayout;

const catalogue::McuRecord& row(const char* name) {
  return *catalogue::findByName(name);
}

TEST(Frames, NameTheModelByTheCodeThatTheTargetReported) {
  catalogue::McuRecord record{.code = "E061", .altCode = "F311"};
  EXPECT_EQ(codeBytesOf(record, "E061"), (CodeBytes{0xE0, 0x61}));
  EXPECT_EQ(codeBytesOf(record, "F311"), (CodeBytes{0xF3, 0x11}));
  EXPECT_EQ(codeBytesOf(record, "D123"), (CodeBytes{0xE0, 0x61}));
  record.code = "5A";
  EXPECT_EQ(codeBytesOf(record, ""), (CodeBytes{0x5A, 0xFF}));
}

Bytes reply(std::uint8_t status, SumForm form) {
  Bytes frame = {0x46,   0xB9, 0x68, 0,   static_cast<std::uint8_t>(form == SumForm::OneByte ? 9 : 10),
                 status, 0x11, 0x22, 0x33};
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  if (form == SumForm::TwoBytes) frame.push_back(static_cast<std::uint8_t>(sum >> 8));
  frame.push_back(static_cast<std::uint8_t>(sum));
  frame.push_back(0x16);
  return frame;
}

Receiver receiver(bool pair) {
  Receiver rx;
  rx.armed = true;
  rx.requireStartPair = pair;
  return rx;
}

TEST(Receiver, PutsAFrameTogetherHoweverItIsSplit) {
  for (const bool pair : {false, true}) {
    const Bytes frame = reply(0x80, SumForm::TwoBytes);
    for (std::size_t a = 0; a <= frame.size(); ++a)
      for (std::size_t b = a; b <= frame.size(); ++b) {
        Receiver rx = receiver(pair);
        rx.frame2 = true;
        const std::span<const std::uint8_t> all(frame);
        rx.take(all.first(a));
        rx.take(all.subspan(a, b - a));
        rx.take(all.subspan(b));
        ASSERT_TRUE(rx.frameOk) << a << " " << b << " " << pair;
        ASSERT_EQ(rx.buffer[3], 0x80);
      }
  }
}

TEST(Receiver, DropsNoiseBadEndsAndBadSums) {
  Bytes frame = reply(0x80, SumForm::OneByte);
  Bytes noisy = {0x00, 0x46, 0x46};
  noisy.insert(noisy.end(), frame.begin() + 1, frame.end());
  Receiver rx = receiver(true);
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

TEST(BaudPlan, NamesADividerByFamilyAndKeepsToTheBytes) {
  EXPECT_EQ(baudParameters(traitsOf(Family::Ivy), {11, 115200, 192, 6}), (BaudParameters{192, 250}));
  EXPECT_EQ(baudParameters(traitsOf(Family::Cedar), {4, 2400, 0, 300}), (BaudParameters{0xFE, 0xD4}));
  EXPECT_EQ(baudParameters(traitsOf(Family::Ivy), {0, 0, 64, -1}), (BaudParameters{0, 1}));
  EXPECT_EQ(settleCount(BaudPace::Usual, 9600, BaudFrame::Test, 115200, 11059200), 120);
  EXPECT_EQ(settleCount(BaudPace::Usual, 9600, BaudFrame::Test, 115200, 70000000), 240);
  EXPECT_EQ(settleCount(BaudPace::Birch, 1200, BaudFrame::Change, 115200, 11059200), 90);
  EXPECT_EQ(settleCount(BaudPace::Usual, 57600, BaudFrame::Test, 115200, 70000000), static_cast<std::uint8_t>(400));
  EXPECT_EQ(waitClass(traitsOf(Family::Birch), 14499999, false), 130);
  EXPECT_EQ(waitClass(traitsOf(Family::Cedar), 20000000, true), 130) << "halved once in double speed";
  EXPECT_EQ(waitClass(traitsOf(Family::Kauri), 24499999, false), 129);
  EXPECT_EQ(waitClass(traitsOf(Family::Alder), 1000000, false), 128);
  EXPECT_EQ(reloadValues({0xFF, 0xFD}, true), (ReloadPair{{0xFF, 0xFE}, {0xFF, 0xFD}})) << "1.5 goes to the even 2";
  EXPECT_EQ(reloadValues({0xFF, 0xFD}, false), (ReloadPair{{0xFF, 0xFD}, {0xFF, 0xFA}}));
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

TEST(ErasePlan, CountsSectorsAndRanges) {
  const TargetInfo old = chip('C', {2, 7}, "Cedar-HF8D"), late = chip('C', {4, 8}, "Cedar-HF8D");
  EXPECT_EQ(eraseSectorCount(old, row("Cedar-H10R"), 99999), 30);
  EXPECT_EQ(eraseSectorCount(old, row("Cedar-LF8D"), 99999), 126);
  EXPECT_EQ(eraseSectorCount(late, row("Cedar-HF8D"), 1023), 2);
  EXPECT_EQ(eraseSectorCount(late, row("Cedar-HF8D"), 200000), 255);
  EXPECT_EQ(eraseSectorCount(chip('B', {4, 3}, ""), row("Birch-LFCZ"), 0), 124);
  const ImagePlan unused{4096, 5119, 600, true, false, 5120};
  options::OptionBytes reported{};
  reported.fill(0xFF);
  const TargetInfo ivy = chip('I', {6, 3}, "Ivy-HF0S");
  EXPECT_EQ(eraseRange(ivy, row("Ivy-HF0S"), unused, reported), (AddressRange{600, 4096}));
  reported[8] = 0xFD;
  EXPECT_EQ(eraseRange(ivy, row("Ivy-HF0S"), unused, reported), (AddressRange{600, 5119}));
  const ImagePlan spill{4096, 5119, 4096, false, true, 4800};
  EXPECT_EQ(eraseRange(ivy, row("Ivy-HF0S"), spill, reported), (AddressRange{4801, 5119}));
  EXPECT_EQ(eraseRange(late, row("Cedar-HF8D"), unused, reported), (AddressRange{0x10000, 0x10000}));
  EXPECT_EQ(buildEraseFrame(chip('G', {5, 0}, ""), row("Ivy-HF0S"), 255, {1, 2})[4], 140) << "at every version";
}

TEST(BlockPlan, CutsRangesIntoBlocksAndFrames) {
  EXPECT_EQ(roundedEnd(100, 128), 0x27F);
  EXPECT_EQ(roundedEnd(1024, 512), 1535);
  EXPECT_EQ(blocksOf(0, 0x27F, 512), (std::vector<AddressRange>{{0, 511}, {512, 1023}}));
  EXPECT_EQ(blocksOf(700, 1535, 512), (std::vector<AddressRange>{{700, 1023}, {1024, 1535}}));
  EXPECT_EQ(framesOf({700, 1023}, true, 128), (std::vector<FrameSpan>{{700, 128}, {768, 128}, {896, 128}}));
  EXPECT_EQ(framesOf({0, 127}, false, 128), (std::vector<FrameSpan>{{0, 128}}));
  EXPECT_EQ(framesOf({512, 1023}, true, 64).size(), 8u);
  EXPECT_EQ(progressScale(0, 0x8000), (ProgressScale{0, 129, true}));
  EXPECT_EQ(progressScale(16, 0x7FFF), (ProgressScale{16, 0x8000, false}));
  EXPECT_EQ(kilobyteText(512), ".500K");
  EXPECT_EQ(kilobyteText(12800), "12.500K");
}

TEST(BlockPlan, ChoosesWhatToSendByFamilyAndImages) {
  JobImage code{.rangeEnd = 0xFFFF}, data;
  const auto ranges = [&](const char* name, FirmwareVersion version, int block, int frame) {
    return planSends(row(name), version, block, frame, code, data).ranges;
  };
  using Ranges = std::vector<SendRange>;
  EXPECT_EQ(ranges("Ivy-HF0S", {6, 3}, 512, 128), (Ranges{{true, 0, 0xF3FF}}));
  EXPECT_EQ(ranges("Cedar-HF8D", {4, 8}, 512, 128), (Ranges{{true, 0, 0xFFFF}}));
  EXPECT_EQ(ranges("Fir-H40", {5, 8}, 512, 128), (Ranges{{true, 0, 0x6FFF}}));
  EXPECT_EQ(ranges("Fir-H10", {5, 0}, 512, 128), (Ranges{{true, 0, 0x2FFF}}));
  code.rangeEnd = 20;
  EXPECT_EQ(ranges("Ivy-HF0S", {6, 3}, 512, 128), (Ranges{{true, 0, 0x3FF}}));
  data.loaded = true;
  data.rangeEnd = 99;
  const auto& fir = row("Fir-H10");
  EXPECT_EQ(ranges("Fir-H10", {5, 8}, 512, 128),
            (Ranges{{true, 0, fir.apEnd + 1}, {true, fir.dataStart, fir.dataStart + 99}}));
  data.rangeEnd = 0;
  EXPECT_EQ(ranges("Fir-H10", {5, 8}, 512, 128), (Ranges{{true, 0, 21}}));
}

TEST(DataFrames, HaveTimeByClockAndRate) {
  EXPECT_EQ(dataFrameLimitMs(11059200, 115200), 1200);
  EXPECT_EQ(dataFrameLimitMs(33000000, 9600), 1500);
  EXPECT_EQ(dataFrameLimitMs(2000000, 2400), 4000);
}

TEST(ModelCheck, WantsLetterAndCodeToAgree) {
  const auto fits = [](char letter, const char* code, const char* name, const char* selected, int frame = 128) {
    TargetInfo target = chip(letter, {6, 3}, name);
    target.modelCodeHigh = std::string(code).substr(0, 2);
    target.modelCodeLow = std::string(code).substr(2);
    target.targetModelName = name;
    return modelFits(target, row(selected), frame, traitsOf(row(selected)).blockSize);
  };
  const std::string ivy(row("Ivy-HF0S").code), cedar(row("Cedar-HF8D").code);
  EXPECT_TRUE(fits('I', ivy.c_str(), "Ivy-HF0S", "Ivy-HF0S"));
  EXPECT_FALSE(fits('J', ivy.c_str(), "Ivy-HF0S", "Ivy-HF0S")) << "a wrong letter and a right code";
  EXPECT_FALSE(fits('I', "D101", "", "Ivy-HF0S"));
  EXPECT_TRUE(fits('C', cedar.c_str(), "Cedar-HF8D", "Cedar-HF8D"));
  EXPECT_TRUE(fits('B', "56", "Birch-LFCZ", "Birch-LFCA"));
  EXPECT_TRUE(fits('B', "FF", "", "Birch-L80A"));
  EXPECT_FALSE(fits('B', "56", "Birch-LFCZ", "Birch-L80A"));
  EXPECT_TRUE(fits('F', "E010", "Fir-H40", "Fir-H50"));
  EXPECT_FALSE(fits('F', "E004", "Fir-H10", "Fir-H50"));
  EXPECT_FALSE(fits('A', "FFFF", "", "Ivy-HF0S")) << "only Alder's blocks are as large as its frames";
  EXPECT_TRUE(fits('x', "0000", "", "Ivy-HF0S")) << "letters outside the range pass";
}

TEST(StatusFrame, GivesClockVersionAndReservedSize) {
  std::array<std::uint8_t, 64> rx{};
  for (std::size_t i = 4; i < 20; i += 2) rx[i] = 1;  // eight counts of 256
  EXPECT_FLOAT_EQ(clockFromStatus(rx, 2400, false), (512 + 6) * 2063.f);
  EXPECT_FLOAT_EQ(clockFromStatus(rx, 2400, true), (512 + 6) * 2063.f);
  EXPECT_FLOAT_EQ(clockFromFixedLink(rx), 500.5f * (2048 + 145));
  EXPECT_EQ(reservedBytesOf(row("Cedar-H50D"), 3), 0);
  EXPECT_EQ(reservedBytesOf(row("Cedar-HF8D"), 0xA3), 0xA00);
  EXPECT_EQ(reservedFromVersion({2, 6}, 7), 1024);
  EXPECT_EQ(reservedFromVersion({0, 5}, 7), 2048);
  EXPECT_EQ(reservedFromVersion({4, 0}, 7), 7);
}

TEST(OptionPlan, ComparesWhatEachFamilyTells) {
  options::OptionSet set;
  set.wanted.fill(0xFF);
  set.reported = set.wanted;
  set.reported[1] = 0x77;
  EXPECT_FALSE(optionsAgree(OptionLayout::Long, false, Moment::BeforeWrite, set));
  EXPECT_TRUE(optionsAgree(OptionLayout::Long, false, Moment::AfterWrite, set)) << "bits 3 and 7 are the chip's own";
  set.reported = set.wanted;
  set.reported[0] = 0;
  EXPECT_FALSE(optionsAgree(OptionLayout::ShortHazel, false, Moment::BeforeWrite, set));
  EXPECT_TRUE(optionsAgree(OptionLayout::ShortHazel, false, Moment::AfterWrite, set));
  EXPECT_TRUE(optionsAgree(OptionLayout::Short, false, Moment::BeforeWrite, set));
  EXPECT_FALSE(optionsAgree(OptionLayout::Short, true, Moment::BeforeWrite, set));
  EXPECT_FALSE(runsFromExternalClock(OptionLayout::Short, 1, set));
  EXPECT_TRUE(runsFromExternalClock(OptionLayout::Short, 0, set));
  EXPECT_EQ(alderOptionByte(row("Alder-H80D"), true), 72);
  EXPECT_EQ(alderOptionByte({.quirks = {.smallOptionByte = true}}, true), 40);
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
