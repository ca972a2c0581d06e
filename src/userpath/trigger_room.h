// The self-defined command: tells the user's running program to reset into the boot firmware, and downloads at once, so
// that nobody has to cycle the power.
#pragma once

#include "download/download_room.h"
#include "userpath/userpath_panel.h"

namespace kvr::userpath {

class TriggerRoom {
 public:
  TriggerRoom(download::RunRoom room, const download::JobPanels& panels, download::DownloadRoom& download,
              UserPathPanel& page);

  // The command, 20 ms of silence, the download. Nothing when a sequence is under way. Also what the file watcher runs.
  void sendAndDownload();

 private:
  bool sendCommand();
  download::RunRoom room_;
  download::JobPanels panels_;
  download::DownloadRoom& download_;
  UserPathPanel& page_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::userpath
