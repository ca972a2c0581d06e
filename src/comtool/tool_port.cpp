#include "comtool/tool_port.h"

#include "platform/text.h"

namespace kvr::comtool {

std::string portSettings(const std::string& baud, const std::string& parity, const std::string& dataBits,
                         const std::string& stopBits) {
  return platform::trim(baud) + "," + parity.substr(0, 1) + "," + platform::trim(dataBits) + "," +
         platform::trim(stopBits);
}

ToolPort::ToolPort(platform::World world, engine::PortLease& lease, const platform::Activity& activity,
                   platform::UiLock& lock, ToolPanel& panel, MainPort mainPort)
    : world_(world), lease_(lease), activity_(activity), lock_(lock), panel_(panel), mainPort_(mainPort) {
  panel_.com_Debug_Baud.onClick = [this] { com_Debug_Baud_Change(); };
  panel_.com_Debug_Baud.onChange = [this] { com_Debug_Baud_Change(); };
  panel_.che_DTR.onClick = [this] {
    if (holds()) lease_.link().setDtr(panel_.che_DTR.value());
  };
  panel_.che_RTS.onClick = [this] {
    if (holds()) lease_.link().setRts(panel_.che_RTS.value());
  };
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
}

// While a run is on, the terminal must not take the port away from it.
void ToolPort::applyLock() {
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    panel_.comOpenCOM[i].setEnabled(lock_.free());
    panel_.imgOpen[i].setEnabled(lock_.free());
  }
}

void ToolPort::imgNotOpen_Click(int index) {
  if (panel_.comOpenCOM[static_cast<std::size_t>(index)].caption() != kOpenCaption) return;
  if (const auto error = openLink()) return fail(error);
  showState(true);
  applyModemLines();
  lease_.hold(*this);
}

// The port is closed before its number or its settings change: what another master has set must not leak into this use.
platform::PortError ToolPort::openLink() {
  platform::SerialLink& link = lease_.link();
  const int number = panel_.com_Debug_COM.listIndex() + 1;
  if (link.portNumber() != number) {
    lease_.close();
    link.setPortNumber(number);
  }
  const std::string settings = portSettings(panel_.com_Debug_Baud.text(), panel_.com_Debug_ParityCheck.text(),
                                            panel_.com_Debug_DataBits.text(), panel_.com_Debug_StopBits.text());
  if (platform::upper(settings) != platform::upper(link.settings())) {
    lease_.close();
    if (const auto error = link.setSettings(settings)) return error;
  }
  return link.isOpen() ? platform::PortError{} : link.open();
}

// Opening raises both lines; only what the person switched off is to be told.
void ToolPort::applyModemLines() {
  if (!panel_.che_DTR.value()) lease_.link().setDtr(false);
  if (!panel_.che_RTS.value()) lease_.link().setRts(false);
}

void ToolPort::imgOpen_Click(int) {
  if (!lease_.heldBy(*this)) return;
  giveUp();
  lease_.release(*this);
}

void ToolPort::giveUp() {
  const bool wasOpen = isOpen();
  lease_.close();
  showState(false);
  if (wasOpen && onClosed) onClosed();
}

void ToolPort::showState(bool open) {
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    panel_.imgOpen[i].setOn(open);
    panel_.comOpenCOM[i].setCaption(open ? kCloseCaption : kOpenCaption);
  }
  const bool samePort = panel_.com_Debug_COM.text() == mainPort_.combCommPort.text();
  if (open ? samePort : samePort || raisedMainLamp_) mainPort_.imgOpen_sys.setOn(open);
  raisedMainLamp_ = open && samePort;
}

void ToolPort::com_Debug_Baud_Change() {
  if (!isOpen()) return;
  imgOpen_Click();
  imgNotOpen_Click();
}

bool ToolPort::makeReady() {
  if (activity_.busy() || lock_.busy()) return false;
  imgNotOpen_Click();
  return holds();
}

void ToolPort::fail(const platform::PortError& error) {
  lease_.close();
  if (onPortError) onPortError();
  world_.dialogs.message("KVR-ISP", error.text, platform::BoxIcon::Warning);
}

void ToolPort::bytesWait() {
  if (onReceive) onReceive();
}

void ToolPort::portLost() {
  giveUp();
}

void ToolPort::portVanished(const platform::PortError& error) {
  showState(false);
  lease_.release(*this);
  if (onClosed) onClosed();
  fail(error);
}

}  // namespace kvr::comtool
