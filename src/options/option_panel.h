// The controls of the options page, of the report beside it and of the pin panels.
//
// The same button means another thing in another family (`Option1(0)` is a reset pin, a gain or 24 MHz), so nobody
// outside this room reads one by its place: ask `OptionsRoom` by key.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace kvr::options {

struct OptionPanel {
  OptionPanel();
  void addTo(platform::ControlRegistry& registry);
  // The control of this panel with the name and index, as option rows name it; null when there is none.
  platform::Control* find(std::string_view name, int index = platform::Control::kSingle) const {
    return own_.find(name, index);
  }

  static constexpr int kRows = 14;  // option lines; a line is a label, its buttons and perhaps a list
  platform::ControlArray<platform::Label, 14> LabOption{"LabOption"};
  platform::ControlArray<platform::OptionButton, 2> Option0{"Option0"};
  platform::ControlArray<platform::OptionButton, 2> Option1{"Option1"};
  platform::ControlArray<platform::OptionButton, 2> Option2{"Option2"};
  platform::ControlArray<platform::OptionButton, 3> Option3{"Option3"};
  platform::ControlArray<platform::OptionButton, 2> Option4{"Option4"};
  platform::ControlArray<platform::OptionButton, 2> Option5{"Option5"};
  platform::ControlArray<platform::OptionButton, 2> Option6{"Option6"};
  platform::ControlArray<platform::OptionButton, 2> Option7{"Option7"};
  platform::ControlArray<platform::OptionButton, 2> Option8{"Option8"};
  platform::ControlArray<platform::OptionButton, 2> Option9{"Option9"};
  platform::ControlArray<platform::OptionButton, 2> Option10{"Option10"};
  platform::ControlArray<platform::OptionButton, 2> Option11{"Option11"};
  platform::ControlArray<platform::OptionButton, 3> Option12{"Option12"};
  platform::ControlArray<platform::OptionButton, 2> Option13{"Option13"};
  std::vector<platform::OptionButton*> optionButtons(int row) const;  // of `Option<row>`, by index

  // 0: watchdog prescaler, 1: clocks to wait after wake-up.
  platform::ControlArray<platform::ComboBox, 2> comWDT_Prescalar{"comWDT_Prescalar"};
  // 5: the wanted frequency of the internal oscillator, MHz, a list that takes free text. 4: the low-voltage threshold.
  // 1, 2: coarse trim by hand, band and step. 0 and 3 are only kept with the settings.
  platform::ControlArray<platform::ComboBox, 6> com_RC_frequency{"com_RC_frequency"};
  platform::TextBox txt_RC_frequency{"txt_RC_frequency"};  // fine trim by hand
  platform::ControlArray<platform::Label, 5> Label8{"Label8"};
  platform::ControlArray<platform::Label, 2> LabOptionC{"LabOptionC"};
  platform::ControlArray<platform::Frame, 16> Picture2{"Picture2"};  // the strips behind the option lines

  // What the chip reported: 1 the headline, from 2 on a line each; 0, 15, 16 the frame around.
  platform::ControlArray<platform::Label, 17> LabLock{"LabLock"};

  // Pins that the boot firmware drives while it programs. Element 0 of a pair: none (or level low), element 1: the pin
  // in the list (or level high). The watchdog pair stands twice, on the options page and on the ISP DEMO page;
  // `OptionsRoom` keeps the two alike.
  platform::ControlArray<platform::OptionButton, 2> opt_485_pin{"opt_485_pin"};
  platform::ComboBox comb_485_pin{"comb_485_pin"};  // "P0.0" .. "P4.3"
  platform::ControlArray<platform::OptionButton, 2> opt_485_logic{"opt_485_logic"};
  platform::ControlArray<platform::OptionButton, 2> opt_External_WDT{"opt_External_WDT"};
  platform::ComboBox comb_External_WDT{"comb_External_WDT"};
  platform::ControlArray<platform::OptionButton, 2> opt_ISP_DEMO_WDT{"opt_ISP_DEMO_WDT"};
  platform::ComboBox comb_WDT{"comb_WDT"};

 private:
  void gatherControls();
  std::array<platform::OptionGroup, kRows + 4> groups_;
  platform::ControlRegistry own_;
};

// The frequencies that box 5 offers, MHz.
const std::vector<std::string>& frequencyChoices();
// "P0.0" to "P4.3": eight pins a port, four in the last one.
const std::vector<std::string>& pinNames();

}  // namespace kvr::options
