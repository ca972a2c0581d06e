#include "monitor/monitor_panel.h"

namespace kvr::monitor {

MonitorPanel::MonitorPanel() {
  Frame21.setCaption("Debug_SFR");
  Frame22.setCaption("Debug_xdata");
  for (std::size_t i = 0; i < comDebugContinue.size(); ++i) comDebugContinue[i].setCaption("Continue");
  comDebugContinue[0].setVisible(false);
  che_disable_Debug_SFR_232.setCaption("停止 Debug_SFR, Debug_xdata 回发信号");
}

void MonitorPanel::addTo(platform::ControlRegistry& registry) {
  registry.addAll(Frame21, Frame22, lst_debug1, lst_debug2, lst_debug3, lst_debug4, comDebugContinue,
                  che_disable_Debug_SFR_232);
}

}  // namespace kvr::monitor
