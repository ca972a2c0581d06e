// The terminal's hold on the one serial port: open, close, change of settings, and the buttons and lamps that show it.
// Whoever starts a run closes it first (`imgOpen_Click`); at the end of a download it may be opened again.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "comtool/tool_panel.h"
#include "engine/port_lease.h"
#include "platform/activity.h"
#include "platform/ui_lock.h"
#include "platform/world.h"

namespace kvr::comtool {

// "115200,N,8,1" from the texts of the boxes.
std::string portSettings(const std::string& baud, const std::string& parity, const std::string& dataBits,
                         const std::string& stopBits);

// What of the main window the terminal reads and shows.
struct MainPort {
  const platform::ComboBox& combCommPort;  // the engine's port
  platform::Lamp& imgOpen_sys;             // its lamp: also on while the terminal has that port open
};

class ToolPort : private engine::PortHolder {
 public:
  ToolPort(platform::World world, engine::PortLease& lease, const platform::Activity& activity, platform::UiLock& lock,
           ToolPanel& panel, MainPort mainPort);

  // An error at the port, or its loss: automatic sends must end. Called before the person is told.
  std::function<void()> onPortError;
  std::function<void()> onClosed;   // whenever the terminal let the port go
  std::function<void()> onReceive;  // at least one byte waits

  // "Close COM" is what the buttons read while it is open.
  bool isOpen() const { return panel_.comOpenCOM[0].caption() != kOpenCaption; }
  // True while bytes may be written: open, and the port not in another master's hands.
  bool holds() const { return isOpen() && lease_.heldBy(*this) && lease_.link().isOpen(); }

  // Opens the port with the page's settings; nothing when the buttons don't read "Open COM". A port error is told in a
  // message box and leaves the port closed.
  void imgNotOpen_Click(int index = 0);
  // Closes the port and gives it back.
  void imgOpen_Click(int index = 0);
  void com_Debug_Baud_Change();

  // For a person's sends and automatic ones: opens the port if need be. False: nothing can be sent, because a run is on
  // or the port cannot be opened.
  [[nodiscard]] bool makeReady();
  void write(std::span<const std::uint8_t> bytes) { lease_.link().write(bytes); }
  std::size_t outBytesPending() const { return lease_.link().outBytesPending(); }

 private:
  platform::PortError openLink();
  void showState(bool open);
  void fail(const platform::PortError& error);
  void giveUp();
  void bytesWait() override;
  void portVanished(const platform::PortError& error) override;
  void portLost() override;
  void applyModemLines();
  void applyLock();

  platform::World world_;
  engine::PortLease& lease_;
  const platform::Activity& activity_;
  platform::UiLock& lock_;
  ToolPanel& panel_;
  MainPort mainPort_;
  bool raisedMainLamp_ = false;  // the person may pick other ports while this one is open
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::comtool
