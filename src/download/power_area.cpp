#include "download/power_area.h"

#include "platform/text.h"

namespace kvr::download {

engine::PowerSwitch readPower(const DownloadPanel& panel) {
  engine::PowerSwitch power;
  if (panel.cobPowerLine.listIndex() == 1) power.line = platform::ModemLine::Dtr;
  if (panel.cobPowerLine.listIndex() == 2) power.line = platform::ModemLine::Rts;
  power.onWhenSet = panel.cobPowerLevel.listIndex() == 0;
  power.off = engine::nearestOffTime(platform::wholeOf(panel.txtPowerOff.text()));
  return power;
}

PowerArea::PowerArea(DownloadPanel& panel, engine::PortLease& lease, platform::UiLock& lock)
    : panel_(panel), lease_(lease), lock_(lock) {
  panel_.txtPowerOff.onLeave = [this] { showOffTime(); };
  tokens_ = {panel_.cobPowerLine.changed.watch([this] { choose(); }),
             panel_.cobPowerLevel.changed.watch([this] { choose(); }), lock_.changed.watch([this] { applyLock(); })};
  showChoice();
}

void PowerArea::choose() {
  const engine::PowerSwitch power = readPower(panel_);
  if (power == chosen_) return;
  chosen_ = power;
  if (!power.line) lease_.link().freeLine();
  engine::keepSupply(lease_.link(), power, true);
  showChoice();
}

void PowerArea::showChoice() {
  panel_.cobPowerLevel.setVisible(chosen_.line.has_value());
  panel_.txtPowerOff.setVisible(chosen_.line.has_value());
}

// What the box says is what a run will do.
void PowerArea::showOffTime() {
  panel_.txtPowerOff.setText(std::to_string(readPower(panel_).off.count()));
}

// A run has read these boxes, and has the line in hand.
void PowerArea::applyLock() {
  for (platform::Control* control :
       std::initializer_list<platform::Control*>{&panel_.cobPowerLine, &panel_.cobPowerLevel, &panel_.txtPowerOff})
    control->setEnabled(!lock_.busy());
}

}  // namespace kvr::download
