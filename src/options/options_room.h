// The options of the selected model: fills the panel, keeps it enabled as the lock says, reads it into option bytes,
// and shows what a chip reported. One instance lives as long as the window.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/selected_model.h"
#include "options/compose_options.h"
#include "options/option_lines_view.h"
#include "options/option_panel.h"
#include "options/target_report.h"
#include "platform/dialogs.h"
#include "platform/ui_lock.h"

namespace kvr::options {

class OptionsRoom {
 public:
  // `stepFrame` is the frame around the options page; its caption says when a change takes effect.
  OptionsRoom(platform::Dialogs& dialogs, OptionPanel& panel, const catalogue::SelectedModel& model,
              platform::UiLock& lock, platform::TextBox& textMsg, platform::Label& stepFrame);

  // --- the panel
  // The page of the selected model with its defaults; choices made before are gone, the message pane and the report are
  // emptied. To be called after every selection of a model, the same model included.
  void showFamilyPanel();
  const std::vector<PanelGroup>& groups() const { return groups_; }
  std::string note() const;        // small print of the page; empty: none
  platform::Signal layoutChanged;  // `groups` and `note` are new
  // Enables the panel's controls by the state of the lock. Runs by itself when the lock changes. The frequency box
  // stays open in a locked state, since no project holds it, and closes while a run goes on.
  void applyEnableRules();

  // --- choices by key
  bool chosen(std::string_view key) const;  // the button of the key is on; false without such a key
  // As a project file keeps it: "True" or "False" of a button, the list index of a list; empty without such a key.
  std::string controlValue(std::string_view key) const;
  // The reverse. "True" is 1, "False" is 0, anything else the number at its head. False: the family has no such key. A
  // list keeps its choice when the index does not fit. No handler runs.
  bool setControlValue(std::string_view key, const std::string& value);
  PanelValues readPanel() const;

  // --- option bytes
  OptionSet& set() { return set_; }
  const OptionSet& set() const { return set_; }
  // Rebuilds `wanted` and `wantedWords` from the panel. `trim` as measured in this run, if it was.
  void composeOptions(std::optional<RcTrim> trim = {});
  void refreshChoices();  // for the selected model's family

  // --- internal oscillator
  std::int32_t wantedFrequencyHz() const;  // box 5; a comma counts as a point; 0: no number
  std::int32_t baseFrequencyHz() const;    // 24000000 or 12000000: what the boot firmware runs at while it programs
  // True when the box holds a frequency that chips can be trimmed to, 4.5 to 45 MHz. Otherwise beeps, says so, and puts
  // the nearest limit into the box. To be asked when the box is left and, for a measured oscillator, when a run starts.
  bool checkFrequency();

  // --- pins
  // The pin that feeds an external watchdog, as it travels: port + 16 * bit; 255 for a text that is no pin; empty when
  // there is none to feed.
  std::optional<std::uint8_t> externalWatchdogPin() const;
  void followPins();  // the pin lists take input when their pins are in use; also runs by itself when a choice changes

  // --- the chip's answer
  void showChipLabels(const std::vector<std::string>& texts);
  void clearLockLabels();

 private:
  void connectButtons();
  void connectPins();
  void tieClockAndReset(int clicked);
  void hideAll();
  void fillRows();
  void fillLowVoltageList();
  void showFixedOptions();
  void applyWatchdogRule();
  const catalogue::FamilyTraits& traits() const { return model_.traits(); }
  platform::Control* controlOf(std::string_view key) const;

  platform::Dialogs& dialogs_;
  OptionPanel& panel_;
  const catalogue::SelectedModel& model_;
  platform::UiLock& lock_;
  platform::TextBox& textMsg_;
  platform::Label& stepFrame_;
  OptionSet set_;
  std::vector<PanelGroup> groups_;
  platform::Signal::Token lockToken_;
  std::vector<platform::Signal::Token> pinTokens_;
};

}  // namespace kvr::options
