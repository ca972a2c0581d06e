// An options page in the virtual world: the room, its panel and what the main form lends it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "catalogue/mcu_record.h"
#include "options/option_table.h"
#include "options/options_room.h"
#include "platform/virtual/virtual_loop.h"
#include "platform/virtual/virtual_world.h"
#include "tests/support/models.h"

namespace kvr::options {

struct OptionsPage {
  platform::VirtualLoop loop;
  platform::ScriptedDialogs dialogs{loop};
  OptionPanel panel;
  catalogue::SelectedModel model;
  platform::UiLock lock;
  platform::TextBox textMsg{"textMsg"};
  platform::Frame step{"FrameX", 3};
  OptionsRoom room{dialogs, panel, model, lock, textMsg, step};

  void select(const std::string& name) {
    const auto* record = catalogue::findByName(name);
    ASSERT_NE(record, nullptr) << name;
    select(*record);
  }
  void select(const catalogue::McuRecord& record) {
    model = catalogue::describeModel(record);
    room.showFamilyPanel();
  }
  std::span<const OptionRow> rows() const { return optionRows(model.traits().panelSlot); }
  platform::Control& control(std::string_view key) {
    const auto* row = findRow(model.traits().panelSlot, key);
    return *panel.find(row->control, row->index);
  }
  platform::OptionButton& button(std::string_view key) { return dynamic_cast<platform::OptionButton&>(control(key)); }
};

// One model with options of each family, small and large Rowan parts alike.
inline std::vector<const catalogue::McuRecord*> modelsWithOptions() {
  return support::oneOfEach([](const catalogue::McuRecord& row) {
    const bool large = row.family == catalogue::Family::Rowan && row.apEnd > 16384;
    return row.noOptions ? "" : std::string(traitsOf(row).name) + (large ? "+" : "");
  });
}

}  // namespace kvr::options
