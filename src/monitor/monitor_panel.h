// The controls of the register monitor: two pages with two lists each.
#pragma once

#include "platform/controls.h"

namespace kvr::monitor {

struct MonitorPanel {
  MonitorPanel();
  void addTo(platform::ControlRegistry& registry);

  platform::Frame Frame21{"Frame21"};          // page "Debug_SFR": lst_debug1, lst_debug2
  platform::Frame Frame22{"Frame22"};          // page "Debug_xdata": lst_debug3, lst_debug4
  platform::ListBox lst_debug1{"lst_debug1"};  // named registers of the selected model's family
  platform::ListBox lst_debug2{"lst_debug2"};  // 256 bytes of internal memory
  platform::ListBox lst_debug3{"lst_debug3"};  // 1024 bytes of external memory
  platform::ListBox lst_debug4{"lst_debug4"};  // a movable window of 512 bytes of external memory
  // 1 and 2: on the two pages. 0 stays hidden; the three make one row with the terminal's buttons of those pages.
  platform::ControlArray<platform::Button, 3> comDebugContinue{"comDebugContinue"};
  platform::CheckBox che_disable_Debug_SFR_232{"che_disable_Debug_SFR_232"};  // send no answers to frames
};

}  // namespace kvr::monitor
