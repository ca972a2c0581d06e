// The lines beside the data of the terminal's port: DTR, RTS and break, which the user sets, and those that the other
// side sets, which are shown.
#pragma once

#include "comtool/port_area.h"

namespace kvr::comtool {

class LineArea {
 public:
  static constexpr platform::Millis kBreakTime{250};
  static constexpr platform::Millis kLookEvery{200};

  LineArea(platform::World world, ToolPanel& panel, PortArea& port);
  void portOpened();
  void portClosed();

 private:
  void startBreak();
  void endBreak();
  void look();
  void show(const platform::InputLines& lines, bool known);

  ToolPanel& panel_;
  PortArea& port_;
  platform::Timer breakTimer_;
  platform::Timer lookTimer_;
};

}  // namespace kvr::comtool
