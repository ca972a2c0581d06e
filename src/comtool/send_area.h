// The send side of the terminal: one text with a repeat timer, a list of strings with a round, and keys typed into the
// receive pane. All of them open the port if need be, except for the keys, and count what went out.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "comtool/port_area.h"
#include "comtool/send_history.h"
#include "comtool/tool_panel.h"
#include "platform/text.h"
#include "platform/world.h"

namespace kvr::comtool {

// What the page adds to every text that is sent: "", CR, LF or CR LF.
std::string_view lineEndOf(const ToolPanel& panel);

class SendArea {
 public:
  static constexpr const char* kBadHex =
      "Please input HEX format data: 0-9, A-F, a-f, a space between each two charaters.";
  static constexpr const char* kLongHex = "The HEX data is too long, at most 4097 bytes.";

  SendArea(const ToolContext& context, PortArea& port);

  std::function<void(std::span<const std::uint8_t>)> onSent;  // by any of the ways but the monitor's answers

  void sendBytes(std::span<const std::uint8_t> bytes);  // opens the port, writes, counts; nothing when it stays closed
  void write(std::span<const std::uint8_t> bytes);      // to the open port, and counts
  void write(const std::string& bytes) { write(platform::bytesOf(bytes)); }
  // UTF-8 text as the bytes that the page's encoding makes of it.
  std::string encoded(std::string_view text) const;

  bool repeats() const { return panel_.comAutoSend.caption() == kStopRepeatCaption; }
  bool goesRound() const { return panel_.comSpreadAutoSend.caption() == kStopRoundCaption; }
  void stopAutoSends();
  void clearCount();

 private:
  void connectButtons();
  void sendText(const std::string& text, bool asHex);
  void sendSingle();
  void sendString(std::size_t index);
  void sendNextString();
  void sendLine();
  void recall(const std::optional<std::string>& text);
  bool sendKey(std::string_view bytes);  // true: the key went out
  void toggleRepeat();
  void toggleRound();
  void sendHex(const std::string& text);
  void refuse(const char* words);
  void start(platform::Button& button, platform::Timer& timer, const platform::TextBox& interval,
             const char* stopCaption, const char* tooSmall);
  void stopRepeat();
  void stopRound();
  std::optional<std::size_t> nextFilled() const;
  void showCount();
  void applyLock();

  platform::Dialogs& dialogs_;
  const platform::Activity& activity_;
  platform::UiLock& lock_;
  PortArea& port_;
  ToolPanel& panel_;
  platform::Timer repeatTimer_;
  platform::Timer roundTimer_;
  std::size_t nextString_ = 0;
  SendHistory history_;
  const platform::TextCodec& codec_;
  std::uint32_t sent_ = 0;
  platform::Signal::Token lockToken_;
};

}  // namespace kvr::comtool
