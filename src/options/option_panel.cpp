#include "options/option_panel.h"

#include "options/compose_options.h"

namespace kvr::options {
namespace {

using platform::ControlArray;
using platform::OptionButton;
using platform::OptionGroup;

template <std::size_t N>
void join(OptionGroup& group, ControlArray<OptionButton, N>& buttons) {
  for (std::size_t i = 0; i < N; ++i) group.add(buttons[i]);
}

void caption(ControlArray<OptionButton, 2>& pair, const std::string& first, const std::string& second) {
  pair[0].setCaption(first);
  pair[1].setCaption(second);
}

std::vector<std::string> numbersBelow(int end) {
  std::vector<std::string> texts;
  texts.reserve(static_cast<std::size_t>(end));
  for (int i = 0; i < end; ++i) texts.push_back(std::to_string(i));
  return texts;
}

}  // namespace

const std::vector<std::string>& frequencyChoices() {
  static const std::vector<std::string> kChoices = {
      "4.5000",  "4.8000",  "5.0000",  "5.7270",  "5.9400",  "6.0000",  "6.1440",  "6.4000",  "7.3800",
      "8.0000",  "8.1920",  "8.3880",  "8.6000",  "8.7190",  "9.0000",  "9.6000",  "10.0000", "10.2400",
      "11.0592", "11.1500", "12.0000", "12.2800", "13.5600", "13.5200", "13.5600", "14.3182", "14.7456",
      "15.0000", "15.3600", "16.0000", "16.3800", "16.9344", "17.7344", "18.4320", "20.0000", "22.1184",
      "23.0400", "24.0000", "24.5760", "25.0000", "26.6900", "27.0000", "28.2240", "29.4912", "29.4993",
      "30.0000", "32.0000", "32.7680", "33.0000", "35.4690", "38.0000", "40.0000", "45.0000"};
  return kChoices;
}

const std::vector<std::string>& pinNames() {
  static const std::vector<std::string> kNames = [] {
    std::vector<std::string> names;
    for (int port = 0; port <= 4; ++port)
      for (int pin = 0; pin < (port == 4 ? 4 : 8); ++pin)
        names.push_back("P" + std::to_string(port) + "." + std::to_string(pin));
    return names;
  }();
  return kNames;
}

OptionPanel::OptionPanel() {
  gatherControls();
  comWDT_Prescalar[0].setItems({kPrescalers.begin(), kPrescalers.end()});
  comWDT_Prescalar[1].setItems({kWakeUpDelays.begin(), kWakeUpDelays.end()});
  for (const std::size_t box : {std::size_t{0}, std::size_t{5}}) {
    com_RC_frequency[box].setEditable(true);
    com_RC_frequency[box].setItems(frequencyChoices());
  }
  com_RC_frequency[1].setItems(numbersBelow(4));
  com_RC_frequency[2].setItems(numbersBelow(64));
  com_RC_frequency[3].setItems(numbersBelow(4));
  comWDT_Prescalar[0].setToolTip("Prescalar value of WatchDog Timer");
  comWDT_Prescalar[1].setToolTip("Clocks to wait after a wake-up from Power Down");
  com_RC_frequency[4].setToolTip("Supply voltage, V, below which the chip acts");
  com_RC_frequency[5].setToolTip("What the program on the chip is to run at, 4.5 to 45 MHz");
  for (auto* pins : {&comb_485_pin, &comb_External_WDT, &comb_WDT}) pins->setItems(pinNames());
  comb_485_pin.setListIndex(0);
  comb_External_WDT.setListIndex(1);
  comb_WDT.setListIndex(1);
  caption(opt_485_pin, "No pin controls the RS485 driver", "RS485 driver is controlled by pin");
  caption(opt_485_logic, "Low level sends", "High level sends");
  caption(opt_External_WDT, "No external watchdog", "External watchdog is fed by pin");
  caption(opt_ISP_DEMO_WDT, "No external watchdog", "External watchdog is fed by pin");
  for (auto* pair : {&opt_485_pin, &opt_485_logic, &opt_External_WDT, &opt_ISP_DEMO_WDT}) (*pair)[0].setValue(true);
}

void OptionPanel::gatherControls() {
  std::size_t group = 0;
  const auto buttons = [&](auto&... arrays) { ((join(groups_[group++], arrays), own_.add(arrays)), ...); };
  buttons(Option0, Option1, Option2, Option3, Option4, Option5, Option6, Option7, Option8, Option9, Option10, Option11,
          Option12, Option13, opt_485_pin, opt_485_logic, opt_External_WDT, opt_ISP_DEMO_WDT);
  own_.addAll(LabOption, comWDT_Prescalar, com_RC_frequency, txt_RC_frequency, Label8, LabOptionC, Picture2, LabLock,
              comb_485_pin, comb_External_WDT, comb_WDT);
}

std::vector<platform::OptionButton*> OptionPanel::optionButtons(int row) const {
  std::vector<OptionButton*> found;
  const std::string name = "Option" + std::to_string(row);
  for (int i = 0; auto* button = own_.findAs<OptionButton>(name, i); ++i) found.push_back(button);
  return found;
}

void OptionPanel::addTo(platform::ControlRegistry& registry) {
  for (auto* control : own_.all()) registry.add(*control);
}

}  // namespace kvr::options
