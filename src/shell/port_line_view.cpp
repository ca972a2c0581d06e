#include "shell/port_line_view.h"

namespace kvr::shell {

PortLine::PortLine(MainPanel& panel, const platform::Activity& activity)
    : panel_(panel), activity_(activity), token_(panel_.combCommPort.changed.watch([this] { follow(); })) {}

void PortLine::follow() {
  if (!deviceOf || number() < 1 || activity_.busy()) return;
  const std::string device = deviceOf(number());
  panel_.portStatus.setCaption(device.empty() ? "COM" + std::to_string(number()) + ": no device found" : device);
}

void PortLine::opened(const std::string& why) {
  panel_.portStatus.setCaption(why.empty() && deviceOf ? deviceOf(number()) : why);
}

}  // namespace kvr::shell
