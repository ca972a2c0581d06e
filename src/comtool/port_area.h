// The terminal's hold on the one serial port: open, close, change of settings, and the buttons and lamps that show it.
// Whoever starts a run closes it first (`releasePort`); at the end of a download it may be opened again.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "comtool/tool_panel.h"
#include "engine/port_lease.h"
#include "platform/activity.h"
#include "platform/text_codec.h"
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

// What the terminal works with.
struct ToolContext {
  platform::World world;
  engine::PortLease& lease;
  platform::Activity& activity;
  platform::UiLock& lock;
  ToolPanel& panel;
  MainPort mainPort;
  const platform::TextCodec& codec;
};

class PortArea : private engine::PortHolder {
 public:
  static constexpr int kLeastBaud = 1;
  static constexpr int kHighestBaud = 20'000'000;      // the fastest adapters make 12000000
  static constexpr platform::Millis kTypingRest{700};  // after the last key of a baud rate that is typed
  static constexpr const char* kBadBaud = "The baud rate must be a whole number from 1 to 20000000.";
  // Who sends without being asked skips a turn while more than this waits in the port: a line that is slower than what
  // is sent must not pile up bytes without end.
  static constexpr std::size_t kMaxQueued = 65536;

  explicit PortArea(const ToolContext& context);

  // An error at the port, or its loss: automatic sends must end. Called before the user is told.
  std::function<void()> onPortError;
  std::function<void()> onOpened;
  std::function<void()> onClosed;                             // whenever the terminal let the port go
  std::function<void(const platform::PortError&)> onAwaited;  // it went, and the user wants it back when it can be had
  std::function<void()> onReceive;                            // at least one byte waits

  // "Close COM" is what the buttons read while it is open.
  bool isOpen() const { return panel_.comOpenCOM[0].caption() != kOpenCaption; }
  // True while bytes may be written: open, and the port not in another master's hands.
  bool holds() const { return isOpen() && lease_.heldBy(*this) && lease_.link().isOpen(); }
  bool overfull() const { return lease_.link().outBytesPending() > kMaxQueued; }

  // Opens the port with the page's settings; nothing when it is open. A port error is told in a message box and leaves
  // the port closed.
  void takePort();
  // The same without a message box and without an end of what waits for the port; the error, if there is one.
  [[nodiscard]] platform::PortError tryOpen();
  // Nobody else is at work, so that the port may be opened.
  bool mayOpen() const { return !activity_.busy() && !lock_.busy(); }
  platform::SerialLink& link() { return lease_.link(); }
  // Closes the port and gives it back.
  void releasePort();

  // For a user's sends and automatic ones: opens the port if need be. False: nothing can be sent, because a run or a
  // dialog keeps the port from being opened, or it cannot be opened.
  [[nodiscard]] bool makeReady();
  void write(std::span<const std::uint8_t> bytes) { lease_.link().write(bytes); }

 private:
  platform::PortError openLink();
  platform::PortError checkRate();
  platform::FlowControl flow() const;
  void connectBaud();
  void changeFlow();
  void reopen();
  void baudLeft();
  void refuseBaud();
  void showState(bool open);
  void fail(const platform::PortError& error);
  void giveUp();
  void bytesWait() override;
  void portVanished(const platform::PortError& error) override;
  void portLost() override;
  void applyModemLines();
  void applyLock();

  platform::Dialogs& dialogs_;
  engine::PortLease& lease_;
  const platform::Activity& activity_;
  platform::UiLock& lock_;
  ToolPanel& panel_;
  MainPort mainPort_;
  bool raisedMainLamp_ = false;  // the user may pick other ports while this one is open
  std::string goodBaud_;         // what comes back after a bad one was typed
  platform::Timer typing_;
  platform::Signal::Token lockToken_;
  platform::Signal::Token baudToken_;
};

}  // namespace kvr::comtool
