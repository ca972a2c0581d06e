#include "engine/status_frame.h"

#include <array>
#include <initializer_list>
#include <utility>

#include "platform/text.h"

namespace kvr::engine {

using catalogue::CodeLookup;
using catalogue::FirmwareVersion;
using catalogue::isLong;
using catalogue::ModelCheck;
using catalogue::OptionLayout;

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

int optionOrder(const TargetInfo& target) {
  const bool early = target.stepping >= 'D' && target.stepping <= 'F';
  if (early) return target.firmware >= FirmwareVersion{5, 5} ? 1 : 0;
  return target.stepping == 'G' && target.firmware > FirmwareVersion{5, 7} ? 1 : 0;
}

bool isLateHazel(const TargetInfo& target) {
  return target.stepping == 'H' && target.firmware >= FirmwareVersion{5, 8};
}

void readStatusOptions(RxBytes rx, const TargetInfo& target, options::OptionBytes& reported) {
  if (target.tellsAllOptions()) {
    for (std::size_t i = 0; i < 16; ++i) reported[i] = rx[26 + i];
  } else if (target.stepping.longOptions()) {
    fill(rx, reported, {{0, 26}, {1, 27}, {2, 28}, {3, 29}, {8, 30}, {9, 31}});
  } else if (!target.stepping.firstGeneration()) {
    if (optionOrder(target) > 0 || isLateHazel(target)) {
      fill(rx, reported, {{0, 32}, {1, 33}, {2, 34}, {3, 35}, {8, 36}, {9, 37}});
    } else {
      fill(rx, reported, {{2, 26}, {3, 27}, {8, 28}, {10, 29}, {11, 30}});
      reported[0] = target.stepping == 'H' ? rx[31] : 255;
    }
  } else {
    reported[target.stepping == 'C' ? 1 : 0] = rx[22];
  }
}

void readAnsweredOptions(RxBytes rx, const TargetInfo& target, OptionLayout layout, options::OptionBytes& reported) {
  if (target.tellsAllOptions()) {
    for (std::size_t i = 0; i < 16; ++i) reported[i] = rx[13 + i];
    return;
  }
  if (layout == OptionLayout::AlderByte || layout == OptionLayout::None) return;
  if (layout == OptionLayout::CedarByte) return fill(rx, reported, {{1, 13}});
  if (isLong(layout)) {
    fill(rx, reported, {{0, 13}, {1, 14}, {2, 15}, {3, 16}, {8, 17}, {9, 18}});
    if (layout == OptionLayout::Rowan) fill(rx, reported, {{0, 13}, {3, 14}, {4, 15}, {8, 16}, {10, 17}, {11, 18}});
  } else if (optionOrder(target) > 0 || isLateHazel(target)) {
    fill(rx, reported, {{0, 19}, {1, 20}, {2, 21}, {3, 22}, {8, 23}, {9, 24}});
  } else {
    fill(rx, reported, {{2, 13}, {3, 14}, {8, 15}, {10, 16}, {11, 17}});
    reported[0] = 255;
  }
}

const catalogue::McuRecord* findTarget(const std::string& code, const catalogue::McuRecord& selected) {
  const auto* found = catalogue::findModelByCode(code);
  if (!found || selected.name.empty()) return found;
  const std::string trimmed = platform::trim(code);
  const bool byTwoDigits = trimmed.size() == 2;
  const bool searched = traitsOf(selected).codes == (byTwoDigits ? CodeLookup::TwoDigits : CodeLookup::FourDigits);
  const bool same = selected.code == trimmed || (!byTwoDigits && selected.altCode == trimmed);
  return searched && same ? &selected : found;
}

int reservedBytesOf(const catalogue::McuRecord& selected, std::uint8_t statusByte) {
  if (selected.quirks.largeIsp) return 0;
  return 0x400 + 0x200 * (statusByte & 3);
}

int reservedFromVersion(FirmwareVersion version, int present) {
  if (version >= FirmwareVersion{4, 0}) return present;
  const bool between = version >= FirmwareVersion{1, 9} && version <= FirmwareVersion{2, 4};
  const bool small = between || version == FirmwareVersion{2, 6};
  return small ? 1024 : 2048;
}

namespace {

// What the letter says of the selected family.
bool letterFits(const catalogue::FamilyTraits& byLetter, const catalogue::McuRecord& selected) {
  if (selected.family == byLetter.family) return true;
  return byLetter.kinShareLetter && traitsOf(selected).layout == byLetter.layout;
}

bool codeFits(const TargetInfo& target, const catalogue::McuRecord& selected) {
  const std::string code = target.modelCode();
  return code == selected.code || (!selected.altCode.empty() && code == selected.altCode);
}

}  // namespace

bool modelFits(const TargetInfo& target, const catalogue::McuRecord& selected, int frameSize, int blockSize) {
  const auto family = catalogue::familyOf(target.stepping);
  if (!family) return true;
  const catalogue::FamilyTraits& byLetter = catalogue::traitsOf(*family);
  if (byLetter.modelCheck == ModelCheck::ByBlockSize) return frameSize == blockSize;
  if (target.stepping != byLetter.letters.front()) return target.quirks().secondLetter;
  if (!letterFits(byLetter, selected)) return false;
  if (byLetter.modelCheck == ModelCheck::ByName) return target.targetRecord.name == selected.name;
  if (byLetter.modelCheck == ModelCheck::ByCode) return codeFits(target, selected);
  return target.targetModelName.empty() || target.targetRecord.code == selected.code;  // models that share a code
}

}  // namespace kvr::engine
