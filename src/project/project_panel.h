// The controls of the project page.
#pragma once

#include "platform/controls.h"

namespace kvr::project {

struct ProjectPanel {
  ProjectPanel();
  void addTo(platform::ControlRegistry& registry);

  platform::Button comSaveBatchFile{"comSaveBatchFile"};
  platform::ControlArray<platform::Button, 1> comOpenBatchFile{"comOpenBatchFile"};
  platform::Button comLockOptions{"comLockOptions"};
  platform::Button comUnlockOptions{"comUnlockOptions"};
  platform::Button Command1{"Command1"};                   // how projects are used
  platform::Button comStations{"comStations"};             // the window of a line with several chips at once
  platform::TextBox texBatchFileName{"texBatchFileName"};  // path of the project saved or opened last
};

}  // namespace kvr::project
