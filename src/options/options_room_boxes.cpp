// The boxes of the options page that are no option bits: the internal oscillator's frequency and the pins.
#include <algorithm>

#include "options/options_room.h"
#include "platform/text.h"

namespace kvr::options {
namespace {

constexpr double kLowestMhz = 4.5;
constexpr double kHighestMhz = 45;

double megahertz(std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  return platform::valueOf(text);
}

// Two elements of which one is on, kept like their twins.
void mirror(const platform::ControlArray<platform::OptionButton, 2>& from,
            platform::ControlArray<platform::OptionButton, 2>& to) {
  for (const std::size_t i : {0u, 1u})
    if (from[i].value()) to[i].setValue(true);
}

}  // namespace

std::int32_t OptionsRoom::wantedFrequencyHz() const {
  const double hz = megahertz(panel_.com_RC_frequency[5].text()) * 1e6;
  return static_cast<std::int32_t>(platform::roundEven(std::clamp(hz, 0.0, 2e9)));
}

std::int32_t OptionsRoom::baseFrequencyHz() const {
  return chosen("New_ISP_f_NO") ? 24000000 : 12000000;
}

bool OptionsRoom::checkFrequency() {
  const double mhz = megahertz(panel_.com_RC_frequency[5].text());
  const bool low = mhz < kLowestMhz;
  if (!low && mhz <= kHighestMhz) return true;
  // First the box, then the message: while that waits to be read, the box may be left a second time.
  panel_.com_RC_frequency[5].setText(low ? "4.5000" : "45.0000");
  dialogs_.beep();
  dialogs_.message("更改内部 R/C 振荡器频率",
                   low ? "内部 R/C 振荡器频率必须大于等于 4.5MHz" : "内部 R/C 振荡器频率必须小于等于 45MHz");
  return false;
}

void OptionsRoom::connectPins() {
  const auto watch = [this](platform::Control& control, std::function<void()> observer) {
    pinTokens_.push_back(control.changed.watch(std::move(observer)));
  };
  auto& panel = panel_;
  for (const std::size_t i : {0u, 1u}) {
    watch(panel.opt_485_pin[i], [this] { followPins(); });
    watch(panel.opt_External_WDT[i], [this] {
      mirror(panel_.opt_External_WDT, panel_.opt_ISP_DEMO_WDT);
      followPins();
    });
    watch(panel.opt_ISP_DEMO_WDT[i], [this] { mirror(panel_.opt_ISP_DEMO_WDT, panel_.opt_External_WDT); });
  }
  watch(panel.comb_External_WDT, [&panel] { panel.comb_WDT.setListIndex(panel.comb_External_WDT.listIndex()); });
  watch(panel.comb_WDT, [&panel] { panel.comb_External_WDT.setListIndex(panel.comb_WDT.listIndex()); });
  followPins();
}

void OptionsRoom::followPins() {
  const bool drives485 = panel_.opt_485_pin[1].value();
  panel_.comb_485_pin.setEnabled(drives485);
  for (const std::size_t i : {0u, 1u}) panel_.opt_485_logic[i].setEnabled(drives485);
  panel_.comb_External_WDT.setEnabled(panel_.opt_External_WDT[1].value());
  panel_.comb_WDT.setEnabled(panel_.opt_ISP_DEMO_WDT[1].value());
}

std::optional<std::uint8_t> OptionsRoom::externalWatchdogPin() const {
  if (!panel_.opt_ISP_DEMO_WDT[1].value()) return {};
  const std::string pin = panel_.comb_WDT.text();
  if (pin.size() != 4) return 255;
  return static_cast<std::uint8_t>((pin[1] - '0') + 16 * (pin[3] - '0'));
}

}  // namespace kvr::options
