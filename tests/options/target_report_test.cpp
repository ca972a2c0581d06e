#include "tests/options/options_page.h"

namespace kvr::options {
namespace {

using Lines = std::vector<std::string>;

OptionBytes allOnes() {
  OptionBytes bytes;
  bytes.fill(255);
  return bytes;
}

TEST(TargetReport, NamesWhatALarchChipHoldsInItsOwnWords) {
  ChipAnswer answer{.modelName = "Larch-L20X", .firmware = {6, 6}, .stepping = 'L', .reported = allOnes()};
  answer.reported[0] = 0x9E;  // reset pin free, wait 8192, low-voltage reset at the higher threshold
  answer.reported[2] = 0xDA;  // watchdog starts, prescaler 8
  const auto report = describeTarget(answer);
  EXPECT_EQ(
      report.lines,
      (Lines{"MCU Type is: Larch-L20X", "MCU Firmware Version: 6.6L", "Next Power-Up-Reset, use External Crystal/Clock",
             "RESET/P4.7 is used as P4.7", "Power-Up do not add extra Reset-Delay-Time",
             "Oscillator Gain:                 High gain", "P1.0/P1.1 are not related to KVR ISP Programming",
             "Next ISP Programming Code,don't erase EEPROM data", "Wait n clocks after MCU is waked up: 8192",
             "Low Voltage Reset, when MCU-VCC < 2.4V", "WDT_CONTR be write-protected except CLR_WDT:NO",
             "WDT is enabled automatically during power-up:YES", "Stop WatchDog Timer counting in Idle mode:  NO",
             "Pre-scale time of WDT:               8"}));
  ASSERT_TRUE(report.labels);
  EXPECT_EQ(report.labels->size(), report.lines.size() - 1);
  EXPECT_EQ(report.labels->front(), " MCU: Larch-L20X  Firmware Version: 6.6L");
}

TEST(TargetReport, FollowsTheLettersLayoutNotTheSelectedModel) {
  const auto line = [](char letter, const char* name, OptionBytes bytes, std::size_t fromEnd) {
    const auto lines = describeTarget({.modelName = name, .stepping = letter, .reported = bytes}).lines;
    return lines.at(lines.size() - fromEnd);
  };
  auto bytes = allOnes();
  bytes[2] = 0xF8;
  bytes[3] = 0xF9;
  for (const char letter : {'D', 'E', 'F', 'G', 'H'})
    EXPECT_EQ(line(letter, "Fir-H40", bytes, 1), "Pre-scale time of WDT(did not start): 4") << letter;
  for (const char letter : {'I', 'J', 'K', 'L', 'Q', 'R'})
    EXPECT_EQ(line(letter, "Fir-H40", bytes, 1), "Pre-scale time of WDT(did not start): 2") << letter;
  for (const auto& [letter, name, volts] : {std::tuple('D', "Elm-H02", "3.3V"),
                                            {'G', "Elm-L02", "2.0V"},
                                            {'J', "Juniper-L02", "2.0V"},
                                            {'K', "Kauri-L02", "2.1V"}})
    EXPECT_EQ(line(letter, name, bytes, 5), std::string("Low Voltage Reset, when MCU-VCC < ") + volts);
  EXPECT_EQ(line('H', "Hazel-L02", bytes, 5), "P1.2/RESET2 is used as P1.2/LVD");
}

TEST(TargetReport, OldestFirmwaresTellTheirSpeedInOneBit) {
  for (const bool twice : {true, false}) {
    const auto report = describeTarget(
        {.stepping = 'A', .reported = allOnes(), .status13 = static_cast<std::uint8_t>(twice ? 8 : 0xF7)});
    EXPECT_EQ(report.lines, (Lines{"MCU Firmware Version: A", twice ? "Double speed: Yes" : "Double speed: No"}));
    EXPECT_EQ(report.doubleSpeed, twice);
    EXPECT_FALSE(report.clearStartPair);
    EXPECT_EQ(report.labels->back(),
              twice ? "Double speed (6 clock) / 双倍速: Yes" : "Double speed (6 clock) / 双倍速: No");
  }
  const auto untold = describeTarget(
      {.sizeUntold = true, .firmware = {3, 2}, .stepping = 'B', .reported = allOnes(), .status13 = 0xF7});
  EXPECT_EQ(untold.lines, (Lines{"MCU Firmware Version: 3.2B", "Double speed: Unknown"}));
  EXPECT_EQ(untold.doubleSpeed, false);
  EXPECT_TRUE(untold.clearStartPair);
}

}  // namespace
}  // namespace kvr::options
