// The terminal as a whole: it puts port, receive area, send area and the pane's tools together and connects the buttons
// of its page. The composition root connects the members below to the engine and to the register monitor.
#pragma once

#include <functional>
#include <span>

#include "comtool/line_area.h"
#include "comtool/log_area.h"
#include "comtool/pane_area.h"
#include "comtool/paste_area.h"
#include "comtool/port_area.h"
#include "comtool/receive_area.h"
#include "comtool/reopen_area.h"
#include "comtool/send_area.h"
#include "comtool/tool_panel.h"
#include "platform/guarded_dialogs.h"

namespace kvr::comtool {

class ToolRoom {
 public:
  explicit ToolRoom(const ToolContext& context);

  std::function<void()> stopRun;                                     // the stop operation of `comStop_Download`
  std::function<void(std::span<const std::uint8_t>)> bytesReceived;  // for the monitor
  std::function<void(const std::string& words)> portIsBack;          // nobody need look at the terminal for it
  std::function<void()> portClosed;                                  // what the monitor awaits will not come any more
  std::function<void()> clearMonitor;                                // empties the monitor's lists

  // Every run calls this before it takes the port. Nothing of what is shown or counted changes.
  void releasePort();
  // At the end of a download when `che_AutoOpenPort` is checked.
  void takePort() { port_.takePort(); }

  // For the monitor: an answer goes to the open port and is not counted; a send opens the port and is.
  void writeAnswer(std::span<const std::uint8_t> bytes);
  void send(std::span<const std::uint8_t> bytes) { send_.sendBytes(bytes); }

  bool isOpen() const { return port_.isOpen(); }
  bool holdsPort() const { return port_.holds(); }
  bool autoOpens() const { return panel_.che_AutoOpenPort.value(); }
  const RxRing& rxRing() const { return receive_.rxRing(); }

 private:
  void connectAreas();
  void connectButtons();
  void takeBytes();
  void paneFull();
  void openOrClose();
  void mainLampPressed();
  void clearPage(std::size_t page);
  void helpOnPage(std::size_t page);
  void applyLock();

  platform::WaitingDialogs dialogs_;  // the terminal is no sequence: its boxes wait for those that are
  ToolContext context_;
  ToolPanel& panel_;
  PortArea port_;
  LineArea lines_;
  ReopenArea reopen_;
  LogArea log_;
  ReceiveArea receive_;
  SendArea send_;
  PasteArea paste_;
  PaneArea pane_;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::comtool
