#include "userpath/line_settings.h"

namespace kvr::userpath {

std::string settingsText(const LineBoxes& line) {
  return line.baud.trimmed() + "," + line.parity.text().substr(0, 1) + "," + line.dataBits.trimmed() + "," +
         line.stopBits.trimmed();
}

platform::PortError openLine(engine::TargetLink& link, const std::string& settings) {
  link.closeTargetPort();
  if (auto error = link.lease().link().setSettings(settings)) {
    if (link.onPortStatus) link.onPortStatus(error.text);
    return error;
  }
  return link.openTargetPort();
}

void sayPortFailed(engine::TargetLink& link) {
  link.beeps(1);
  link.say("Open COM port failed!");
  link.say("The COM port is opened by another Program or the COM port does not exist.");
}

}  // namespace kvr::userpath
