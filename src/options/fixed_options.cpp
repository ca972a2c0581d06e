// Models without changeable options: what the boot firmware has settled, in the order of the option lines.
#include <vector>

#include "options/option_table.h"

namespace kvr::options {
namespace {

constexpr std::string_view kClock = "Next Power-Up-Reset, use External Crystal/Clock";
constexpr std::string_view kDelay = "Power-Up do not add extra Reset-Delay-Time";
constexpr std::string_view kGain = "Oscillator gain:                 High gain";
constexpr std::string_view kPins = "P1.0/P1.1 need = 0/0 when programming";
constexpr std::string_view kKeep = "Next ISP Programming Code,don't erase EEPROM data";
constexpr std::string_view kNotCleared = "Next ISP Programming Code,don't clear EEPROM data";
constexpr std::string_view kReset = "RESET/P4.7 is used as RESET";
constexpr std::string_view kReset36 = "RESET/P3.6 is used as RESET";
constexpr std::string_view kWait = "Wait n clocks after MCU is waked up:32768";
constexpr std::string_view kWatchdog = "Next Cold Start WatchDog did not start.";
constexpr std::string_view kBelow24 = "Low Voltage Reset, when MCU-VCC < 2.4V";
constexpr std::string_view kBelow25 = "Low Voltage Reset, when MCU-VCC < 2.5V";
constexpr std::string_view kBelow37 = "Low Voltage Reset, when MCU-VCC < 3.7V";
constexpr std::string_view kBelow38 = "Low Voltage Reset, when MCU-VCC < 3.8V";
constexpr std::string_view kBelow41 = "Low Voltage Reset, when MCU-VCC < 4.1V";
constexpr std::string_view kBelow43 = "Low Voltage Reset, when MCU-VCC < 4.3V";
constexpr std::string_view kHazelPin = "P1.2/RESET2 is used as P1.2/LVD";
constexpr std::string_view kIvyPin = "P4.6/RESET2 is used as P4.6/LVD";

}  // namespace

std::vector<std::string_view> fixedOptionTexts(const catalogue::McuRecord& record) {
  if (!record.noOptions) return {};
  const bool high = catalogue::voltageClass(record) == 'H';
  switch (record.family) {
    case 5:
      return {kClock, kPins, kNotCleared, high ? kBelow37 : kBelow24, kWatchdog};
    case 6:
      return {kClock, kDelay, kGain, kPins, kNotCleared, kHazelPin, kWatchdog};
    case 7:
      return {kClock, kReset, kDelay, kGain, kPins, kKeep, kIvyPin, kWatchdog};
    case 8:
      return {kClock, kReset, kDelay, kGain, kPins, kKeep, high ? kBelow38 : kBelow24, kWatchdog};
    case 17:
      return {kClock, kReset, kDelay, kGain, kPins, kKeep, high ? kBelow43 : kBelow25, kWatchdog};
    case 9:
    case 10:
      return {kClock, record.family == 9 ? kReset36 : kReset,
              kDelay, kGain,
              kPins,  kKeep,
              kWait,  high ? kBelow41 : kBelow24};
    default:
      return {};
  }
}

}  // namespace kvr::options
