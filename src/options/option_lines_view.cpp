#include "options/option_lines_view.h"

#include <algorithm>

#include "options/option_table.h"

namespace kvr::options {
namespace {

PanelGroup line(int row, OptionPanel& panel) {
  return {.row = row, .label = &panel.LabOption[static_cast<std::size_t>(row)]};
}

std::vector<PanelGroup> fixedLines(const catalogue::McuRecord& record, OptionPanel& panel) {
  std::vector<PanelGroup> groups;
  for (std::size_t i = 0; i < fixedOptionTexts(record).size(); ++i) groups.push_back(line(static_cast<int>(i), panel));
  return groups;
}

// A group begins with its label's row; what follows up to the next label belongs to it.
std::vector<PanelGroup> linesOfTable(int slot, OptionPanel& panel) {
  std::vector<PanelGroup> groups;
  for (const auto& row : optionRows(slot)) {
    auto* control = panel.find(row.control, row.index);
    if (row.control == "LabOption") groups.push_back(line(row.index, panel));
    if (groups.empty()) continue;
    if (auto* box = dynamic_cast<platform::ComboBox*>(control)) groups.back().list = box;
    if (auto* button = dynamic_cast<platform::OptionButton*>(control); button != nullptr && row.key != kClew)
      groups.back().buttons.push_back(button);
  }
  return groups;
}

}  // namespace

bool PanelGroup::holds(const platform::Control* control) const {
  return label == control || list == control || std::find(buttons.begin(), buttons.end(), control) != buttons.end();
}

std::vector<PanelGroup> layOutPanel(const catalogue::McuRecord& record, OptionPanel& panel) {
  if (record.noOptions) return fixedLines(record, panel);
  const catalogue::FamilyTraits& traits = traitsOf(record);
  auto groups = linesOfTable(traits.panelSlot, panel);
  std::erase_if(groups, [&](const PanelGroup& group) { return !hasLine(record, group.row); });
  // The wanted frequency of the internal oscillator is in the line of the clock.
  if (traits.oscillator != catalogue::Oscillator::External && !groups.empty())
    groups.front().list = &panel.com_RC_frequency[5];
  return groups;
}

}  // namespace kvr::options
