#include "images/auto_increment.h"

#include <gtest/gtest.h>

#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;

AutoIncrement counter(int bytes, Radix radix, const std::string& next, int step = 1) {
  return {.address = 0x100, .bytes = bytes, .next = next, .armed = true, .step = step, .radix = radix};
}

TEST(AutoIncrement, WritesMostSignificantByteFirstOrSaysWhyNot) {
  const std::string tooSmall = "The number of bytes is too small.";
  const std::string notTen = "The format of Next Value must be 10 base.";
  const struct {
    int count;
    Radix radix;
    const char* next;
    Bytes bytes;
    std::string fault;
  } cases[] = {
      {2, Radix::Hex, "65535", {0xFF, 0xFF}, ""},
      {10, Radix::Bcd, "7", {0, 0, 0, 0, 0, 0, 0, 0, 0, 7}, ""},
      {2, Radix::Ascii, "0045", {0x34, 0x35}, ""},  // leading zeros that do not fit are no number lost
      {4, Radix::Ascii, "12", {0, 0, 0x31, 0x32}, ""},
      {2, Radix::Hex, "65536", {}, tooSmall},
      {2, Radix::Ascii, "123", {}, tooSmall},
      {0, Radix::Bcd, "0", {}, tooSmall},
      {5, Radix::Hex, "1", {}, "If choose HEX, the number of bytes must be less than or equal to 4."},
      {11, Radix::Bcd, "1", {}, "The number of Bytes must be less than or equal to 10."},
      {4, Radix::Bcd, "-1", {}, notTen},
      {8, Radix::Bcd, "2147483648", {}, "The Next Value must be less than 2147483648."},
  };
  for (const auto& c : cases)
    EXPECT_EQ(autoValue(counter(c.count, c.radix, c.next)), (AutoValue{c.bytes, c.fault})) << c.next;
}

TEST(AutoIncrement, NextValueKeepsItsWidth) {
  EXPECT_EQ(advancedNext(counter(1, Radix::Hex, "9")), "010");
  EXPECT_EQ(advancedNext(counter(4, Radix::Hex, "9", 5)), "00000000014");
  EXPECT_EQ(advancedNext(counter(2, Radix::Bcd, "9999")), "0000") << "a value that outgrows its width loses its head";
  EXPECT_EQ(advancedNext(counter(3, Radix::Ascii, "7", 10)), "017");
}

TEST(AutoIncrement, FieldMustLieInTheModelsMemory) {
  constexpr auto C = ImageKind::Code;
  constexpr auto D = ImageKind::Data;
  const struct {
    ImageKind kind;
    const char* model;
    std::int32_t address;  // of the last byte
    int bytes;
    const char* fault;  // after "The address of auto increament in the "
  } cases[] = {
      {C, "Ivy-HF0S", 0xEFFF, 8, ""},
      {C, "Ivy-HF0S", 0xF000, 8, "data buffer is too big."},
      {C, "Cedar-H20R", 14336, 8, "buffer is too big."},
      {C, "Alder-H80D", 32768, 8, "buffer is too big."},
      {C, "Ivy-HF0S", 3, 5, "code buffer is too small or the number of bytes is too big."},
      {D, "Ivy-HF0S", 1023, 8, ""},
      {D, "Ivy-HF0S", 1024, 8, "data buffer is too big."},
      {D, "Ivy-HF0S", 2, 4, "EEPROM file buffer is too small or the number of bytes is too big."},
  };
  for (const auto& c : cases) {
    const AutoIncrement record{.kind = c.kind, .address = c.address, .bytes = c.bytes};
    const std::string fault = checkAutoRange(record, *catalogue::findByName(c.model));
    EXPECT_EQ(fault, *c.fault ? std::string("The address of auto increament in the ") + c.fault : "") << c.address;
  }
  AutoIncrement record;
  takeTexts(record, {" 12345678 ", "4", " 7 ", "40000"});
  EXPECT_EQ(record.address, 0x45678);
  EXPECT_EQ(checkAutoRange(record, *catalogue::findByName("Ivy-HF0S")),
            "The increase must be between -32767 and 32767.");
}

TEST(AddressRange, AFieldIsCoveredWhenEachOfItsBytesLiesInSomeRange) {
  using catalogue::AddressRange;
  using catalogue::isCovered;
  const AddressRange sent[] = {{0x200, 0x2FF}, {0, 0x1FF}, {0x1000, 0x1FFF}};
  for (const AddressRange& field : {AddressRange{0, 0}, {0x1FC, 0x203}, {0, 0x2FF}, AddressRange{}})
    EXPECT_TRUE(isCovered(field, sent)) << field.first;
  for (const AddressRange& field : {AddressRange{0x2FF, 0x300}, {0x1FFF, 0x2000}, {-1, 0}, {0x280, 0x1010}})
    EXPECT_FALSE(isCovered(field, sent)) << field.first;
  EXPECT_FALSE(isCovered({0, 0}, {}));
}

struct CounterTest : ::testing::Test {
  CounterTest() { bench.openCode("/a.bin", Bytes(2000, 0xAA)); }
  ImagesBench bench{"Ivy-HF0S"};
  ImagePanel& panel = bench.room.panel;
  SerialCounters& counters = bench.room.counters;
  ImageBuffer& code = bench.room.state.CodeBuffer;
};

TEST_F(CounterTest, SwitchingOnWritesTheNumberAndClosesTheBoxes) {
  bench.counterBoxes("fff", "2", "1234", Radix::Bcd);
  panel.cheAuto_Increase.userSet(true);
  EXPECT_EQ(code.at(0xFFE) << 8 | code.at(0xFFF), 0x1234);
  EXPECT_TRUE(code.changedSinceLoad(0xFFF));
  EXPECT_EQ(code.rangeEnd, 0xFFF);
  EXPECT_FALSE(panel.texAuto_Increase[2].enabled() || panel.optAuto_Increase[0].enabled());
  EXPECT_EQ(panel.txtBuffer2.model.field(), (catalogue::AddressRange{0xFFE, 0xFFF}));
  panel.cheAuto_Increase.userSet(false);
  EXPECT_TRUE(panel.texAuto_Increase[2].enabled());
  // The data counter alone makes a data image.
  bench.dataCounterBoxes("7", "4", "77");
  EXPECT_TRUE(bench.room.state.EepromBuffer.loaded);
  EXPECT_EQ(bench.room.state.EepromBuffer.at(7), '7');
}

TEST_F(CounterTest, AdvancesThroughABatchStopsWhenTheNumbersRunOutAndComesBackAtTheNextStart) {
  bench.counterBoxes("100", "1", "250", Radix::Hex, "2");
  panel.cheAuto_Increase.userSet(true);
  EXPECT_EQ(counters.numberInHand(), "250");
  std::vector<int> inChips;
  bool goesOn = counters.armForRun();
  while (goesOn && inChips.size() < 10) {
    inChips.push_back(code.at(0x100));
    goesOn = counters.advanceAfterSuccess();
    EXPECT_EQ((bench.store.values()[{"Auto_Increase", "next_value"}]), panel.texAuto_Increase[2].text());
  }
  EXPECT_EQ(inChips, (std::vector<int>{250, 252, 254}));
  EXPECT_EQ(panel.texAuto_Increase[2].text(), "256");
  EXPECT_FALSE(counters.armForRun()) << "the last number must not go out twice";
  ImagesBench next{"Ivy-HF0S", bench.store.disk()};
  next.room.counters.loadSettings();
  const AutoIncrement& record = next.room.slots.code.counter;
  EXPECT_EQ(std::tuple(record.address, record.bytes, record.next, record.step, record.radix),
            std::tuple(0x100, 1, "256", 2, Radix::Hex))
      << "the next start goes on from there";
}

TEST_F(CounterTest, ANumberThatCannotBeKeptEndsTheRepeatWithAMessage) {
  bench.counterBoxes("100", "2", "7", Radix::Hex);
  panel.cheAuto_Increase.userSet(true);
  EXPECT_TRUE(counters.armForRun() && counters.advanceAfterSuccess());
  bench.store.failure = "disk full";
  EXPECT_FALSE(counters.advanceAfterSuccess());
  EXPECT_EQ(bench.lastBox(), "The next serial number could not be saved, so no further chip is programmed: disk full");
  bench.store.failure.clear();
  EXPECT_TRUE(counters.advanceAfterSuccess());
  EXPECT_EQ((bench.store.values()[{"Auto_Increase", "next_value"}]), panel.texAuto_Increase[2].text());
}

TEST_F(CounterTest, OfTwoWindowsEachKeepsItsCounterAndNoNumberIsGivenTwice) {
  counters.loadSettings();
  ImagesBench other{"Ivy-HF0S", bench.store.disk()};
  other.openCode("/a.bin", Bytes(2000, 0xAA));
  other.room.counters.loadSettings();
  auto& values = bench.store.values();
  bench.counterBoxes("FFF", "2", "5", Radix::Hex, "3");
  panel.cheAuto_Increase.userSet(true);
  other.room.panel.texData_Auto_Increase[0].setText("7");
  other.room.panel.cheData_Auto_Increase.userSet(true);
  EXPECT_EQ((values[{"Auto_Increase", "address"}] + values[{"Auto_Increase", "next_value"}]), "FFF5");
  EXPECT_EQ((values[{"Data_Auto_Increase", "address"}]), "7");
  // The same counter: refused while the first window has it, and continued afterwards.
  other.counterBoxes("FFF", "2", "0000", Radix::Hex);
  other.room.panel.cheAuto_Increase.userSet(true);
  EXPECT_EQ(other.lastBox(),
            "The serial number cannot be used: another window counts with it, or the settings cannot be written.");
  EXPECT_FALSE(other.room.counters.armForRun());
  ASSERT_TRUE(counters.armForRun() && counters.advanceAfterSuccess());
  panel.cheAuto_Increase.userSet(false);
  EXPECT_TRUE(other.room.counters.armForRun());
  EXPECT_EQ(other.lastBox(), "Another window has counted on. The next value is 000008.");
  EXPECT_EQ(other.room.counters.numberInHand(), "000008/0000");
  EXPECT_EQ(other.room.state.CodeBuffer.at(0xFFF), 8);
  EXPECT_EQ((values[{"Auto_Increase", "Increase"}]), "3") << "only what a window has changed is written";
  panel.cheAuto_Increase.userSet(true);
  EXPECT_FALSE(counters.armForRun());
}

TEST_F(CounterTest, ANewFileSwitchesTheBoxOffAndAReloadSwitchesItOnAgain) {
  bench.counterBoxes("100", "2", "500", Radix::Hex);
  panel.cheAuto_Increase.userSet(true);
  bench.files.put("/a.bin", Bytes(2000, 0xBB));
  EXPECT_TRUE(bench.reload());
  EXPECT_TRUE(panel.cheAuto_Increase.value());
  EXPECT_EQ(code.at(0xFF), 1);
  EXPECT_EQ(code.at(0x100), 244);
  EXPECT_EQ(code.at(0x101), 0xBB);
  code.edit(0x100, Bytes{0x99});
  EXPECT_TRUE(counters.armForRun());
  EXPECT_EQ(code.at(0x100), 244) << "a run puts a number back that was edited away";
  bench.openCode("/b.bin", Bytes(2000, 0xCC));
  EXPECT_FALSE(panel.cheAuto_Increase.value() || bench.room.slots.code.counter.armed);
  EXPECT_EQ(code.at(0x100), 0xCC);
}

}  // namespace
}  // namespace kvr::images
