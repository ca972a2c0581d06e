// The page of the demo routine: one download through it, or one after the other.
#pragma once

#include "download/download_room.h"
#include "userpath/demo_run.h"
#include "userpath/userpath_panel.h"

namespace kvr::userpath {

class DemoRoom {
 public:
  DemoRoom(download::RunRoom room, const download::JobPanels& panels, images::ImageRoom& images,
           platform::TextBox& textMsg, UserPathPanel& page);

  // One download, or one after the other until a failure or Stop. Nothing when some other sequence is under way.
  void program(bool repeat);

 private:
  bool round(DemoJob& job);
  void countDown();
  DemoJob readDemoJob() const;
  bool stopped() const { return room_.services.stop.requested(); }

  download::RunRoom room_;
  download::JobPanels panels_;
  images::ImageRoom& images_;
  platform::TextBox& textMsg_;
  UserPathPanel& page_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::userpath
