#include "options/option_table.h"

#include "options/option_rows_cedar_to_hazel.h"
#include "options/option_rows_common.h"
#include "options/option_rows_ivy_to_rowan.h"
#include "platform/ui_lock.h"

namespace kvr::options {
namespace {

struct Thresholds {
  std::string_view reset, other;
};

// What the two buttons of `LowU_Reset` read for the low-voltage class; an empty text is that of the table.
Thresholds lowClassThresholds(int slot) {
  switch (slot) {
    case 4:
    case 7:
      return {"< 2.4V", "< 2.0V"};
    case 5:
    case 6:
      return {"<1.31V Voltage Reset", ""};
    case 8:
    case 9:
      return {"< 2.4V", "< 2.1V"};
    default:
      return {};
  }
}

}  // namespace

bool holds(const OptionBytes& bytes, const BitPlace& place) {
  return place.known() && (bytes[static_cast<std::size_t>(place.byte)] >> place.bit & 1) == place.chosen;
}

bool enabledIn(const OptionRow& row, int lockState) {
  if (lockState == platform::UiLock::kFree) return row.enabledFree;
  return lockState == platform::UiLock::kBusy ? row.enabledBusy : row.enabledLocked;
}

std::span<const OptionRow> optionRows(int slot) {
  switch (slot) {
    case 0:
      return rows::kAlder;
    case 2:
      return rows::kCedar;
    case 4:
      return rows::kElm;
    case 5:
      return rows::kHazel;
    case 6:
      return rows::kIvy;
    case 7:
      return rows::kJuniper;
    case 8:
      return rows::kKauri;
    case 9:
      return rows::kLarch;
    case 10:
      return rows::kPine;
    case 15:
      return rows::kRowan;
    case kCommonSlot:
      return rows::kCommon;
    default:
      return {};
  }
}

const OptionRow* findRow(int slot, std::string_view key) {
  if (key == kClew) return nullptr;
  for (const auto& row : optionRows(slot))
    if (row.key == key) return &row;
  return nullptr;
}

std::string_view captionText(int slot, std::size_t index, char voltageClass) {
  const auto table = optionRows(slot);
  const std::string_view text = table[index].text;
  if (voltageClass == 'H' || index + 1 >= table.size()) return text;
  const std::string_view key = table[index + 1].key;
  const auto low = lowClassThresholds(slot);
  if (key == "LowU_Reset_YES" && !low.reset.empty()) return low.reset;
  if (key == "LowU_Reset_NO" && !low.other.empty()) return low.other;
  return text;
}

std::string reportText(int slot, std::size_t index, char voltageClass) {
  const std::string_view report = optionRows(slot)[index].report;
  if (report != rows::kLowVoltageReset) return std::string(report);
  return std::string(report) + " " + std::string(captionText(slot, index - 1, voltageClass));
}

bool hasLine(const catalogue::McuRecord& record, int line) {
  constexpr int kClearUnusedLine = 4;
  return line != kClearUnusedLine || record.apEnd >= traitsOf(record).unusedFrom;
}

std::span<const std::string_view> lowVoltageChoices(char voltageClass) {
  static constexpr std::array<std::string_view, 6> kHigh = {"4.05", "3.82", "3.61", "3.43", "3.28", "3.14"};
  static constexpr std::array<std::string_view, 6> kLow = {"2.61", "2.42", "2.26", "2.12", "2.00", "1.89"};
  return voltageClass == 'H' ? kHigh : kLow;
}

}  // namespace kvr::options
