// The controls of the tab "Off-Line-ISP": what an operator sets for an off-line programmer board, and the button that
// writes it.
#pragma once

#include "platform/controls.h"

namespace kvr::offline {

struct OfflinePanel {
  OfflinePanel();
  void addTo(platform::ControlRegistry& registry);

  platform::Frame Frame18{"Frame18"};  // the page
  platform::Button comTJXZ{"comTJXZ"};
  platform::Button com_TJXZ_help{"com_TJXZ_help"};
  platform::TextBox txt_download_max{"txt_download_max"};  // how many chips the board may program, 1..1000000

  // 0, 1: what the board is for; 2: the text beside txt_download_max; 3: the text beside combPins.
  platform::ControlArray<platform::Label, 4> labTJXZ{"labTJXZ"};

  // Kept for the board's header and not shown: the package's number of pins and four switches of a sorting machine.
  platform::ComboBox combPins{"combPins"};
  platform::ControlArray<platform::CheckBox, 4> che_staple{"che_staple"};
};

}  // namespace kvr::offline
