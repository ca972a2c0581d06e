// The controls of the main window that several sequences write: the message pane, the port box and its lamp, the
// progress bar.
#pragma once

#include "platform/controls.h"

namespace kvr::engine {

struct SharedControls {
  platform::TextBox& textMsg;
  platform::ComboBox& combCommPort;  // list index + 1 is the port number
  platform::Lamp& imgOpen_sys;       // on: a sequence has the port open
  platform::ProgressBar& ProgressBar1;
  platform::Label& labKbyte;
};

}  // namespace kvr::engine
