#include "images/auto_increment.h"

#include <gtest/gtest.h>

#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;

AutoIncrement counter(int bytes, int radix, const std::string& next, int step = 1) {
  return {.kind = "AP_AUTO_INCREASE",
          .address = 0x100,
          .bytes = bytes,
          .next = next,
          .armed = true,
          .step = step,
          .radix = radix};
}

TEST(AutoIncrement, WritesMostSignificantByteFirstWithZerosInFront) {
  const struct {
    int count, radix;
    const char* next;
    Bytes bytes;
  } cases[] = {
      {2, kRadixHex, "65535", {0xFF, 0xFF}},
      {4, kRadixHex, "2147483647", {0x7F, 0xFF, 0xFF, 0xFF}},
      {10, kRadixBcd, "7", {0, 0, 0, 0, 0, 0, 0, 0, 0, 7}},
      {2, kRadixAscii, "0045", {0x34, 0x35}},  // leading zeros that do not fit are no number lost
      {3, kRadixHex, "", {0, 0, 0}},
      {3, kRadixAscii, "", {0, 0, 0}},
  };
  for (const auto& c : cases) EXPECT_EQ(autoValue(counter(c.count, c.radix, c.next)).bytes, c.bytes) << c.next;
}

TEST(AutoIncrement, RefusesWhatDoesNotFitTheField) {
  const auto fault = [](int count, int radix, const std::string& next) {
    const AutoValue value = autoValue(counter(count, radix, next));
    EXPECT_EQ(value.bytes.empty(), !value.fault.empty());
    return value.fault;
  };
  const std::string tooSmall = "The number of bytes is too small.";
  EXPECT_EQ(fault(2, kRadixHex, "65536"), tooSmall);
  EXPECT_EQ(fault(2, kRadixBcd, "12345"), tooSmall);
  EXPECT_EQ(fault(2, kRadixAscii, "123"), tooSmall);
  EXPECT_EQ(fault(0, kRadixBcd, "0"), tooSmall);
  EXPECT_EQ(fault(5, kRadixHex, "1"), "If choose HEX, the number of bytes must be less than or equal to 4.");
  EXPECT_EQ(fault(11, kRadixBcd, "1"), "The number of Bytes must be less than or equal to 10.");
  EXPECT_EQ(fault(11, kRadixAscii, "1"), "The number of Bytes must be less than or equal to 10.");
  EXPECT_EQ(fault(4, kRadixBcd, "12a"), "The format of Next Value must be 10 base.");
  EXPECT_EQ(fault(4, kRadixBcd, "-1"), "The format of Next Value must be 10 base.");
  EXPECT_EQ(fault(8, kRadixBcd, "2147483648"), "The Next Value must be less than 2147483648.");
}

TEST(AutoIncrement, NextValueKeepsItsWidth) {
  EXPECT_EQ(advancedNext(counter(1, kRadixHex, "9")), "010");
  EXPECT_EQ(advancedNext(counter(4, kRadixHex, "9", 5)), "00000000014");
  EXPECT_EQ(advancedNext(counter(2, kRadixBcd, "9999")), "0000") << "a value that outgrows its width loses its head";
  EXPECT_EQ(advancedNext(counter(3, kRadixAscii, "7", 10)), "017");
}

TEST(AutoIncrement, FieldMustLieInTheModelsMemory) {
  const struct {
    bool isData;
    const char* model;
    std::int32_t address;  // of the last byte
    int bytes;
    const char* fault;  // behind "The address of auto increament in the "
  } cases[] = {
      {false, "Ivy-HF0S", 0xEFFF, 8, ""},
      {false, "Ivy-HF0S", 0xF000, 8, "data buffer is too big."},
      {false, "Cedar-H20R", 14335, 8, ""},
      {false, "Cedar-H20R", 14336, 8, "buffer is too big."},
      {false, "Alder-H80D", 32768, 8, "buffer is too big."},
      {false, "Ivy-HF0S", 3, 4, ""},
      {false, "Ivy-HF0S", 3, 5, "code buffer is too small or the number of bytes is too big."},
      {true, "Ivy-HF0S", 1023, 8, ""},
      {true, "Ivy-HF0S", 1024, 8, "data buffer is too big."},
      {true, "Ivy-HF0S", 2, 4, "EEPROM file buffer is too small or the number of bytes is too big."},
  };
  for (const auto& c : cases) {
    const AutoIncrement record{
        .kind = c.isData ? "Data_Auto_Increase" : "AP_AUTO_INCREASE", .address = c.address, .bytes = c.bytes};
    const std::string fault = checkAutoRange(record, *catalogue::findByName(c.model));
    EXPECT_EQ(fault, *c.fault ? std::string("The address of auto increament in the ") + c.fault : "") << c.address;
  }
  EXPECT_EQ(autoAddress(" 12345678 "), 0x45678);
}

struct CounterTest : ::testing::Test {
  CounterTest() { bench.openCode("/a.bin", Bytes(2000, 0xAA)); }
  ImagesBench bench{"Ivy-HF0S"};
  ImagePanel& panel = bench.room.panel;
  SerialCounters& counters = bench.room.counters;
  ImageBuffer& code = bench.room.state.CodeBuffer;
};

TEST_F(CounterTest, SwitchingOnWritesTheNumberAndClosesTheBoxes) {
  bench.counterBoxes("fff", "2", "1234", kRadixBcd);
  panel.cheAuto_Increase.userSet(true);
  EXPECT_EQ(code.at(0xFFE), 0x12);
  EXPECT_EQ(code.at(0xFFF), 0x34);
  EXPECT_TRUE(code.changedSinceLoad(0xFFF));
  EXPECT_EQ(code.rangeEnd, 0xFFF);
  EXPECT_FALSE(panel.texAuto_Increase[2].enabled() || panel.optAuto_Increase[0].enabled());
  EXPECT_EQ(panel.txtBuffer2.model.field(), (AddressSpan{0xFFE, 0xFFF}));
  panel.cheAuto_Increase.userSet(false);
  EXPECT_TRUE(panel.texAuto_Increase[2].enabled());
  // The data counter alone makes a data image.
  panel.texData_Auto_Increase[0].setText("7");
  panel.texData_Auto_Increase[1].setText("4");
  panel.texData_Auto_Increase[2].setText("77");
  panel.optData_Auto_Increase[kRadixAscii].setValue(true);
  panel.cheData_Auto_Increase.userSet(true);
  EXPECT_TRUE(bench.room.state.EepromBuffer.loaded);
  EXPECT_EQ(bench.room.state.EepromBuffer.at(7), '7');
}

TEST_F(CounterTest, ARunIsRefusedWhenABoxIsOnAndItsNumberCannotBeWritten) {
  EXPECT_TRUE(counters.armForRun()) << "both boxes are off";
  bench.counterBoxes("F000", "2", "1", kRadixHex);
  panel.cheAuto_Increase.userSet(true);
  EXPECT_FALSE(counters.armForRun()) << "the field lies outside the model's memory";
  panel.cheAuto_Increase.userSet(false);
  bench.counterBoxes("EFFF", "-30000", "1", kRadixHex);
  panel.cheAuto_Increase.userSet(true);
  EXPECT_FALSE(counters.armForRun()) << "a length below nothing";
  panel.cheAuto_Increase.userSet(false);
  bench.counterBoxes("100", "1", "256", kRadixHex);
  panel.cheAuto_Increase.userSet(true);
  bench.dialogs.shown.clear();
  EXPECT_FALSE(counters.armForRun());
  EXPECT_EQ(bench.boxes(), std::vector<std::string>{"The number of bytes is too small."});
}

TEST_F(CounterTest, AdvancesThroughABatchAndStopsWhenTheNumbersRunOut) {
  bench.counterBoxes("100", "1", "250", kRadixHex);
  panel.texAuto_Increase[3].setText("2");
  panel.cheAuto_Increase.userSet(true);
  EXPECT_EQ(counters.numberInHand(), "250");
  std::vector<int> inChips;
  bool goesOn = counters.armForRun();
  while (goesOn && inChips.size() < 10) {
    inChips.push_back(code.at(0x100));
    goesOn = counters.advanceAfterSuccess();
    EXPECT_EQ(bench.store.getOr("Auto_Increase", "next_value", ""), panel.texAuto_Increase[2].text());
  }
  EXPECT_EQ(inChips, (std::vector<int>{250, 252, 254}));
  EXPECT_EQ(panel.texAuto_Increase[2].text(), "256");
  EXPECT_FALSE(counters.armForRun()) << "the last number must not go out twice";
}

TEST_F(CounterTest, SettingsComeBackAtTheNextStart) {
  bench.counterBoxes("1ABC", "4", "77", kRadixAscii);
  panel.texAuto_Increase[3].setText("3");
  panel.cheAuto_Increase.userSet(true);
  ImagesBench next{"Ivy-HF0S"};
  next.store.values = bench.store.values;
  next.room.counters.loadAutoSettings();
  EXPECT_EQ(next.room.counters.code.address, 0x1ABC);
  EXPECT_EQ(next.room.counters.code.step, 3);
  EXPECT_EQ(next.room.counters.code.radix, kRadixAscii);
}

TEST_F(CounterTest, ANewFileSwitchesTheBoxOffAndAReloadSwitchesItOnAgain) {
  bench.counterBoxes("100", "2", "500", kRadixHex);
  panel.cheAuto_Increase.userSet(true);
  bench.files.put("/a.bin", Bytes(2000, 0xBB));
  EXPECT_TRUE(bench.room.loader.reload());
  EXPECT_TRUE(panel.cheAuto_Increase.value());
  EXPECT_EQ(code.at(0xFF), 1);
  EXPECT_EQ(code.at(0x100), 244);
  EXPECT_EQ(code.at(0x101), 0xBB);
  code.edit(0x100, Bytes{0x99});
  EXPECT_TRUE(counters.armForRun());
  EXPECT_EQ(code.at(0x100), 244) << "a run puts a number back that was edited away";
  bench.openCode("/b.bin", Bytes(2000, 0xCC));
  EXPECT_FALSE(panel.cheAuto_Increase.value());
  EXPECT_FALSE(counters.code.armed);
  EXPECT_EQ(code.at(0x100), 0xCC);
}

}  // namespace
}  // namespace kvr::images
