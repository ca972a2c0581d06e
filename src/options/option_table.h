// The option tables: for every group of families, what its panel shows, which bit each choice is, and with which
// texts a chip's answer is reported. Panel, bytes, report, project file and off-line image read these rows by key.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/mcu_record.h"
#include "options/option_set.h"

namespace kvr::options {

// Rows without a choice of their own (labels, captions) carry this key; no look-up finds them.
inline constexpr std::string_view kClew = "Clew";

// The bit of a choice. `chosen` is the value of the bit that means "chosen", which is 0 as often as 1.
struct BitPlace {
  int byte = -1;  // index of the option byte, 0 to 16; -1: the row is no bit
  int bit = 0;
  int chosen = 0;
  constexpr bool known() const { return byte >= 0; }
};

// One property of one control. A button has two rows: its caption, and after it its value, which carries the key. Where
// two rows of a control differ in when it takes input, the later one counts.
struct OptionRow {
  std::string_view key = kClew;
  std::string_view control;
  int index = -1;             // in the array of that name; -1: a single control
  std::string_view property;  // "Caption", "Value" or "Text"
  std::string_view text;      // the caption, or the value that a freshly selected model starts with
  bool visible = true;
  bool enabledFree = true;    // takes input while nothing is locked
  bool enabledBusy = true;    // ... while a run goes on
  bool enabledLocked = true;  // ... while the options are locked, in a run or not
  std::string_view report{};  // how a chip that has it so is described; empty: not at all
  BitPlace place{};
};

// A button that is on or off, as opposed to a caption or a list.
constexpr bool isChoice(const OptionRow& row) {
  return row.key != kClew && row.property == "Value";
}

// Whether the bytes hold the choice; false for a place that is no bit.
bool holds(const OptionBytes& bytes, const BitPlace& place);

// Whether a row's control takes input in a state of `UiLock`.
bool enabledIn(const OptionRow& row, int lockState);

// Slots are 0, 1, 2, 4 to 10, 15 (traits `panelSlot`, `projectSlot`), and this one.
inline constexpr int kCommonSlot = 20;  // rows of every family: where project keys of model, files and counters live

// The rows of a slot in panel order; empty for slot 1 and for unknown slots.
std::span<const OptionRow> optionRows(int slot);

// The row of a key; null when the table has no such key.
const OptionRow* findRow(int slot, std::string_view key);

// The texts of row `index` of a table as a chip of the voltage class has them: the threshold at which it resets is
// in the captions and reports of the two `LowU_Reset` choices. Any class but 'H' is the low-voltage one.
std::string_view captionText(int slot, std::size_t index, char voltageClass);
std::string reportText(int slot, std::size_t index, char voltageClass);

// Whether the model's page has the line: small parts have no unused code area to choose about.
bool hasLine(const catalogue::McuRecord& record, int line);

// The entries of the list `Low_Voltage_detector`, volts, from the highest threshold down.
std::span<const std::string_view> lowVoltageChoices(char voltageClass);

// What a model without changeable options is fixed to, a line each; empty for a model that has options.
std::vector<std::string_view> fixedOptionTexts(const catalogue::McuRecord& record);

}  // namespace kvr::options
