// Models without changeable options: what the boot firmware has settled, in the order of the option lines.
#include <algorithm>
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

// A family's lines; where the reset threshold stands it is that of the high-voltage class, and `low` is the other one.
struct FixedLines {
  catalogue::Family family;
  std::vector<std::string_view> lines;
  std::string_view high{};
  std::string_view low{};
};

const std::vector<FixedLines>& fixedLines() {
  using enum catalogue::Family;
  static const std::vector<FixedLines> kFixed = {
      {Gum, {kClock, kPins, kNotCleared, kBelow37, kWatchdog}, kBelow37, kBelow24},
      {Hazel, {kClock, kDelay, kGain, kPins, kNotCleared, kHazelPin, kWatchdog}},
      {Ivy, {kClock, kReset, kDelay, kGain, kPins, kKeep, kIvyPin, kWatchdog}},
      {Juniper, {kClock, kReset, kDelay, kGain, kPins, kKeep, kBelow38, kWatchdog}, kBelow38, kBelow24},
      {Sumac, {kClock, kReset, kDelay, kGain, kPins, kKeep, kBelow43, kWatchdog}, kBelow43, kBelow25},
      {Kauri, {kClock, kReset36, kDelay, kGain, kPins, kKeep, kWait, kBelow41}, kBelow41, kBelow24},
      {Larch, {kClock, kReset, kDelay, kGain, kPins, kKeep, kWait, kBelow41}, kBelow41, kBelow24},
  };
  return kFixed;
}

}  // namespace

std::vector<std::string_view> fixedOptionTexts(const catalogue::McuRecord& record) {
  if (!record.noOptions) return {};
  const auto fixed = std::find_if(fixedLines().begin(), fixedLines().end(),
                                  [&](const FixedLines& one) { return one.family == record.family; });
  if (fixed == fixedLines().end()) return {};
  auto lines = fixed->lines;
  if (catalogue::voltageClass(record) != 'H') std::replace(lines.begin(), lines.end(), fixed->high, fixed->low);
  return lines;
}

}  // namespace kvr::options
