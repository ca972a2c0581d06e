#include "comtool/com_tool.h"

#include "comtool/tool_guide.h"

namespace kvr::comtool {

ComTool::ComTool(platform::World world, engine::PortLease& lease, const platform::Activity& activity,
                 platform::UiLock& lock, ToolPanel& panel, MainPort mainPort)
    : world_(world),
      lease_(lease),
      activity_(activity),
      lock_(lock),
      panel_(panel),
      port_(world, lease, activity, lock, panel, mainPort),
      receive_(world, panel),
      send_(world, port_, panel),
      tools_(world, panel) {
  port_.onPortError = [this] { send_.stopAutoSends(); };
  port_.onClosed = [this] { receive_.portClosed(); };
  receive_.onOverflow = [this] { overflowed(); };
  port_.onReceive = [this] { receiveBranch(); };
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
  connectButtons(mainPort);
}

void ComTool::connectButtons(MainPort mainPort) {
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    const int index = static_cast<int>(i);
    panel_.comOpenCOM[i].onClick = [this, index] { comOpenCOM_Click(index); };
    panel_.imgOpen[i].onClick = [this, index] { comOpenCOM_Click(index); };
    panel_.comDebugClear[i].onClick = [this, index] { comDebugClear_Click(index); };
    panel_.comDebugHelp[i].onClick = [this, index] { comDebugHelp_Click(index); };
  }
  panel_.comClearCount.onClick = [this] { comClearCount_Click(); };
  mainPort.imgOpen_sys.onClick = [this, &lamp = mainPort.imgOpen_sys] {
    if (lamp.on()) imgOpen_sys_Click();
  };
}

void ComTool::applyLock() {
  for (std::size_t i = 1; i < ToolPanel::kPages; ++i) {
    panel_.comDebugClear[i].setEnabled(lock_.free());
    panel_.comDebugHelp[i].setEnabled(!lock_.busy());
  }
  panel_.comDebugSend.setEnabled(lock_.free());
  panel_.comAutoSend.setEnabled(lock_.free());
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i) panel_.comSpreadSendCom[i].setEnabled(!lock_.busy());
}

// What one event takes is bounded; the lease calls again for what is left.
void ComTool::receiveBranch() {
  for (std::size_t taken = 0; taken < RxRing::kCapacity && lease_.link().inBytesPending() > 0;) {
    const auto bytes = lease_.link().readBytes(0);
    if (bytes.empty()) return;
    taken += bytes.size();
    receive_.receive(bytes);
    if (bytesReceived) bytesReceived(bytes);
  }
}

// A run that has taken the port meanwhile is not to be stopped: nothing more can come from the terminal's port anyway.
void ComTool::overflowed() {
  if (activity_.busy() || lock_.busy()) return;
  if (stopRun) stopRun();
  send_.stopAutoSends();
  port_.imgOpen_Click();
  world_.dialogs.message("KVR-ISP", ReceiveArea::kTooLong);
}

// Closing by hand ends the automatic sends first; they would open the port again.
void ComTool::comOpenCOM_Click(int index) {
  if (!port_.isOpen()) return port_.imgNotOpen_Click(index);
  send_.stopAutoSends();
  port_.imgOpen_Click(index);
}

void ComTool::imgOpen_sys_Click() {
  if (stopRun) stopRun();
  if (port_.isOpen()) comOpenCOM_Click(0);
}

void ComTool::comDebugClear_Click(int index) {
  if (index == 0)
    receive_.clearPane();
  else if (clearMonitor)
    clearMonitor();
  receive_.clearRing();
}

void ComTool::comDebugHelp_Click(int index) {
  if (index == 0) return panel_.texReceive.setText(toolGuide());
  world_.dialogs.message("KVR-ISP", "Click COM Tool please, then click the Help button in the COM Tool area.");
}

void ComTool::comClearCount_Click() {
  receive_.clearCount();
  send_.clearCount();
}

void ComTool::writeAnswer(std::span<const std::uint8_t> bytes) {
  if (port_.holds()) port_.write(bytes);
}

}  // namespace kvr::comtool
