// What a user does with the text of the receive pane: find something in it, save it to a file.
#pragma once

#include "comtool/tool_panel.h"
#include "platform/ui_lock.h"
#include "platform/world.h"

namespace kvr::comtool {

class PaneArea {
 public:
  PaneArea(platform::World world, ToolPanel& panel, platform::UiLock& lock);

 private:
  // From the selection on, or back from it; past the end it goes on from the other side. What is found is selected and
  // brought into sight.
  void find(bool backward);
  // Asks for a file and writes the pane's text as it is now (UTF-8). A failure is told and leaves an old file as it
  // was.
  void save();

  platform::World world_;
  ToolPanel& panel_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::comtool
