#include "engine/status_frame.h"

#include <array>
#include <initializer_list>
#include <utility>

#include "engine/family_rules.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

using Places = std::initializer_list<std::pair<std::size_t, std::size_t>>;  // option byte, place in the frame

void fill(RxBytes rx, options::OptionBytes& reported, Places places) {
  for (const auto& [option, place] : places) reported[option] = rx[place];
}

double sumOfCounts(RxBytes rx, std::size_t counts) {
  double sum = 0;
  for (std::size_t i = 0; i < counts; ++i) sum += rx[2 * i + 4] * 256 + rx[2 * i + 5];
  return sum;
}

}  // namespace

int clockFactor(int baud) {
  static constexpr std::array<std::pair<int, int>, 9> kFactors = {{{115200, 2101},
                                                                   {57600, 2080},
                                                                   {38400, 2075},
                                                                   {28800, 2072},
                                                                   {19200, 2070},
                                                                   {14400, 2068},
                                                                   {9600, 2068},
                                                                   {4800, 2066},
                                                                   {2400, 2063}}};
  for (const auto& [rate, factor] : kFactors)
    if (rate == baud) return factor;
  return 2061;
}

int baudUnits(int baud) {
  return static_cast<int>(platform::roundEven(baud / 1200.0));
}

float clockFromStatus(RxBytes rx, int connectBaud, bool dualClock) {
  const double sum = dualClock ? 2 * sumOfCounts(rx, 4) : sumOfCounts(rx, 8);
  const auto average = platform::roundEven(sum * baudUnits(connectBaud) / 8);
  return static_cast<float>(static_cast<double>(average + 6) * clockFactor(connectBaud));
}

float clockFromFixedLink(RxBytes rx) {
  return static_cast<float>(500.5 * (sumOfCounts(rx, 8) + 145));
}

std::string versionTextOf(std::uint8_t byte) {
  const std::string digits = platform::hexText(byte, 2);
  const std::string text = digits.substr(0, 1) + "." + digits.substr(1);
  return text == "0.0" ? std::string() : text;
}

int optionOrder(const TargetInfo& target) {
  const std::string& letter = target.steppingLetter;
  int order = (letter == "D" || letter == "E" || letter == "F") && target.version10() >= 55 ? 1 : 0;
  if (letter == "G" && target.version10() > 57) ++order;
  return order;
}

bool isLateHazel(const TargetInfo& target) {
  return target.steppingLetter == "H" && target.version10() >= 58;
}

void readStatusOptions(RxBytes rx, const TargetInfo& target, options::OptionBytes& reported) {
  const std::string& letter = target.steppingLetter;
  if (target.familyClass == 4) {
    for (std::size_t i = 0; i < 16; ++i) reported[i] = rx[26 + i];
  } else if (letter >= "I") {
    fill(rx, reported, {{0, 26}, {1, 27}, {2, 28}, {3, 29}, {8, 30}, {9, 31}});
  } else if (letter >= "D") {
    if (optionOrder(target) > 0 || isLateHazel(target)) {
      fill(rx, reported, {{0, 32}, {1, 33}, {2, 34}, {3, 35}, {8, 36}, {9, 37}});
    } else {
      fill(rx, reported, {{2, 26}, {3, 27}, {8, 28}, {10, 29}, {11, 30}});
      reported[0] = letter == "H" ? rx[31] : 255;
    }
  } else {
    reported[letter == "C" ? 1 : 0] = rx[22];
  }
}

void readAnsweredOptions(RxBytes rx, const TargetInfo& target, int family, options::OptionBytes& reported) {
  if (target.familyClass == 4) {
    for (std::size_t i = 0; i < 16; ++i) reported[i] = rx[13 + i];
    return;
  }
  if (family <= 1) return;
  if (isCedarLike(family)) return fill(rx, reported, {{1, 13}});
  if (isLaterOptionFamily(family)) {
    fill(rx, reported, {{0, 13}, {1, 14}, {2, 15}, {3, 16}, {8, 17}, {9, 18}});
    if (family == 18) fill(rx, reported, {{0, 13}, {3, 14}, {4, 15}, {8, 16}, {10, 17}, {11, 18}});
  } else if (optionOrder(target) > 0 || isLateHazel(target)) {
    fill(rx, reported, {{0, 19}, {1, 20}, {2, 21}, {3, 22}, {8, 23}, {9, 24}});
  } else {
    fill(rx, reported, {{2, 13}, {3, 14}, {8, 15}, {10, 16}, {11, 17}});
    reported[0] = 255;
  }
}

int highestOptionIndex(const TargetInfo& target, int family) {
  if (target.familyClass == 4) return 28;
  if (family <= 1 || isCedarLike(family)) return 13;
  if (isLaterOptionFamily(family)) return 18;
  return optionOrder(target) > 0 || isLateHazel(target) ? 24 : 17;
}

const catalogue::McuRecord* findTarget(const std::string& code, const catalogue::McuRecord& selected) {
  const auto* found = catalogue::findModelByCode(code);
  if (!found || selected.name.empty()) return found;
  const std::string trimmed = platform::trim(code);
  const bool byTwoDigits = trimmed.size() == 2;
  const bool searched = byTwoDigits ? selected.family == 1 : selected.family >= 2;
  const bool same = selected.code == trimmed || (!byTwoDigits && selected.altCode == trimmed);
  return searched && same ? &selected : found;
}

int reservedBytesOf(const catalogue::McuRecord& selected, std::uint8_t statusByte) {
  for (const char* name : {"Cedar-H50D", "Cedar-L50D", "Cedar-HF4D", "Cedar-LF4D"})
    if (selected.name == name) return 0;
  return 0x400 + 0x200 * (statusByte & 3);
}

int reservedFromVersion(int version10, int present) {
  if (version10 < 0 || version10 >= 40) return present;
  const bool small = (version10 >= 19 && version10 <= 24) || version10 == 26;
  return small ? 1024 : 2048;
}

namespace {

bool isFirOf16To30K(std::string_view name) {
  if (name.substr(0, 4) != "Fir-" || name.size() < 7) return false;
  const auto pages = platform::hexOf(name.substr(5, 2));
  return pages >= 16 * 4 && pages <= 30 * 4;
}

bool birchFits(const TargetInfo& target, const catalogue::McuRecord& selected) {
  const auto shared = [](std::string_view name) { return name == "Birch-LFCZ" || name == "Birch-LFCA"; };
  if (selected.family != 1) return false;
  if (shared(target.targetModelName)) return shared(selected.name);
  return target.targetModelName.empty() || target.targetModelName == selected.name;
}

}  // namespace

bool modelFits(const TargetInfo& target, const catalogue::McuRecord& selected, int frameSize, int blockSize) {
  const std::string& letter = target.steppingLetter;
  const int family = familyOfLetter(letter);
  if (family < 0) return true;
  if (letter == "A") return frameSize == blockSize;
  if (letter == "B") return birchFits(target, selected);
  if (letter == "F") return isFirOf16To30K(target.targetModelName);
  const bool familyFits = letter == "C" ? isCedarLike(selected.family) : selected.family == family;
  if (!familyFits) return false;
  if (letter == "E") return target.targetRecord.name == selected.name;
  const std::string code = target.modelCode();
  const bool secondCounts = letter == "J" || letter == "Q" || letter == "R" || letter == "S";
  return code == selected.code || (secondCounts && !selected.altCode.empty() && code == selected.altCode);
}

}  // namespace kvr::engine
