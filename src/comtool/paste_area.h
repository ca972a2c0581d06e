// Pastes a text into the line: at the line's own pace and no faster, with pauses as the user wishes, and to be
// cancelled at any moment. What waits in the port is never more than the line carries in `kAhead`.
#pragma once

#include <string>

#include "comtool/paste_queue.h"
#include "comtool/port_area.h"
#include "comtool/send_area.h"

namespace kvr::comtool {

class PasteArea {
 public:
  static constexpr platform::Millis kAhead{50};
  static constexpr platform::Millis kTick{10};
  static constexpr int kLongestPause = 10'000;  // milliseconds

  PasteArea(platform::World world, ToolPanel& panel, PortArea& port, SendArea& send);
  void portClosed() { cancel(); }

 private:
  bool paste(const std::string& text);
  void step();
  void cancel();
  void showProgress();
  void showEnd(const char* how);
  std::size_t room() const;

  ToolPanel& panel_;
  PortArea& port_;
  SendArea& send_;
  PasteQueue queue_;
  platform::Timer timer_;
};

}  // namespace kvr::comtool
