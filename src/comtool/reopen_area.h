// Waits for an adapter that was pulled out and opens its port again. The wait ends when the user opens or closes a
// port, picks another, unticks the box, or a run takes the port.
#pragma once

#include <functional>
#include <string>

#include "comtool/port_area.h"

namespace kvr::comtool {

class ReopenArea {
 public:
  static constexpr platform::Millis kTryEvery{500};

  ReopenArea(platform::World world, ToolPanel& panel, PortArea& port);
  std::function<void(const std::string& words)> say;   // a line in the pane
  std::function<void(const std::string& words)> back;  // the port is open again

  void portVanished(const platform::PortError& error);
  void end();  // no more waiting

 private:
  void tryAgain();
  ToolPanel& panel_;
  PortArea& port_;
  platform::Timer timer_;
  std::string name_;  // of the port that went
  platform::Signal::Token portToken_;
};

}  // namespace kvr::comtool
