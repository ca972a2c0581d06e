// What a model's options page shows, as data.
#pragma once

#include <vector>

#include "catalogue/mcu_record.h"
#include "options/option_panel.h"

namespace kvr::options {

// One option line. Visibility, captions and values are the controls' own.
struct PanelGroup {
  int row = 0;  // number of the line, 0 to 13: `LabOption(row)`, the strip `Picture2(row)`
  platform::Label* label = nullptr;
  std::vector<platform::OptionButton*> buttons{};  // in reading order; empty: a line to read, or only a list
  platform::ComboBox* list = nullptr;              // after the buttons; null: none
  bool holds(const platform::Control* control) const;
};

// The lines of the model in reading order; empty when it has nothing to show.
std::vector<PanelGroup> layOutPanel(const catalogue::McuRecord& record, OptionPanel& panel);

}  // namespace kvr::options
