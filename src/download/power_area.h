// The controls of the power switch: reads them, and keeps the chosen line still from the moment of the choice on, so
// that not even the terminal's opening of the port cuts a target off.
#pragma once

#include <vector>

#include "download/download_panel.h"
#include "engine/port_lease.h"
#include "engine/power_switch.h"
#include "platform/ui_lock.h"

namespace kvr::download {

engine::PowerSwitch readPower(const DownloadPanel& panel);

class PowerArea {
 public:
  PowerArea(DownloadPanel& panel, engine::PortLease& lease, platform::UiLock& lock);

 private:
  void choose();
  void showChoice();
  void showOffTime();
  void applyLock();
  DownloadPanel& panel_;
  engine::PortLease& lease_;
  platform::UiLock& lock_;
  engine::PowerSwitch chosen_;
  std::vector<platform::Signal::Token> tokens_;
};

}  // namespace kvr::download
