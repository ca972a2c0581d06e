// The self-defined command: tells the user's running program to reset into the boot firmware, and downloads at once, so
// that nobody has to cycle the power.
#pragma once

#include <functional>

#include "engine/target_link.h"
#include "images/image_buffer.h"
#include "platform/activity.h"
#include "platform/ui_lock.h"
#include "userpath/userpath_panel.h"

namespace kvr::userpath {

class Trigger {
 public:
  Trigger(engine::TargetLink& link, platform::Activity& activity, platform::UiLock& lock,
          const images::ImageState& images, UserPathPanel& panel);

  // The command, 20 ms of silence, the download. Nothing when a sequence is under way. Also what the file watcher runs.
  void comSendUserCode_Click();

  std::function<void()> releaseToolPort;  // the terminal gives the port up
  std::function<void()> download;         // comDownload_Click(0); takes the activity guard itself

 private:
  bool sendCommand();
  bool openPort();
  engine::TargetLink& link_;
  platform::Activity& activity_;
  platform::UiLock& lock_;
  const images::ImageState& images_;
  UserPathPanel& panel_;
};

}  // namespace kvr::userpath
