// The terminal as a whole: it puts port, receive area, send areas and the pane's tools together and connects the
// buttons of its page. The composition root connects the members below to the engine and to the register monitor.
#pragma once

#include <functional>
#include <span>

#include "comtool/pane_tools.h"
#include "comtool/receive_area.h"
#include "comtool/send_area.h"
#include "comtool/tool_panel.h"
#include "comtool/tool_port.h"

namespace kvr::comtool {

class ComTool {
 public:
  ComTool(platform::World world, engine::PortLease& lease, const platform::Activity& activity, platform::UiLock& lock,
          ToolPanel& panel, MainPort mainPort);

  std::function<void()> stopRun;                                     // the stop operation of `comStop_Download`
  std::function<void(std::span<const std::uint8_t>)> bytesReceived;  // the monitor's `monitorScan`
  std::function<void()> clearMonitor;                                // the monitor's `clearLists`

  // Every run calls this before it takes the port. Nothing of what is shown or counted changes.
  void imgOpen_Click(int index = 0) { port_.imgOpen_Click(index); }
  // At the end of a download when `che_AutoOpenPort` is checked: the terminal takes the port.
  void imgNotOpen_Click(int index = 0) { port_.imgNotOpen_Click(index); }
  void comOpenCOM_Click(int index);
  void imgOpen_sys_Click();
  void comDebugClear_Click(int index);
  void comDebugHelp_Click(int index);
  void comClearCount_Click();

  // For the monitor: an answer goes to the open port and is not counted; a send opens the port and is.
  void writeAnswer(std::span<const std::uint8_t> bytes);
  void send(std::span<const std::uint8_t> bytes) { send_.sendBytes(bytes); }

  bool isOpen() const { return port_.isOpen(); }
  bool holdsPort() const { return port_.holds(); }
  bool autoOpens() const { return panel_.che_AutoOpenPort.value(); }
  const RxRing& rxRing() const { return receive_.rxRing(); }
  SendArea& sendArea() { return send_; }

 private:
  void receiveBranch();
  void overflowed();
  void connectButtons(MainPort mainPort);
  void applyLock();

  platform::World world_;
  engine::PortLease& lease_;
  const platform::Activity& activity_;
  platform::UiLock& lock_;
  ToolPanel& panel_;
  ToolPort port_;
  ReceiveArea receive_;
  SendArea send_;
  PaneTools tools_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::comtool
