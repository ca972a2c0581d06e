// The send side of the terminal: one text with a repeat timer, a list of strings with a round, and keys typed into the
// receive pane. All of them end in `sendToolText` or `sendBytes`, which open the port if need be and count what went
// out.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "comtool/tool_panel.h"
#include "comtool/tool_port.h"
#include "platform/world.h"

namespace kvr::comtool {

class SendArea {
 public:
  // An automatic send skips its turn while more than this waits in the port: a line that is slower than the interval
  // must not pile up bytes without end.
  static constexpr std::size_t kMaxQueued = 65536;
  static constexpr const char* kBadHex =
      "Please input HEX format data: 0-9, A-F, a-f, a space between each two charaters.";
  static constexpr const char* kLongHex = "The HEX data is too long, at most 4097 bytes.";

  SendArea(platform::World world, ToolPort& port, ToolPanel& panel);

  void sendToolText(const std::string& text, bool asHex);
  void sendBytes(std::span<const std::uint8_t> bytes);  // opens the port, writes, counts; nothing when it stays closed

  void comDebugSend_Click();
  void comAutoSend_Click();
  void comSpreadSendCom_Click(int index);
  void comSpreadAutoSend_Click();
  void TimerDebugAutoSend_Timer();
  void TimerSpreadAutoSend_Timer();
  bool texReceive_KeyPress(char32_t key);  // true: the key went out

  bool repeats() const { return panel_.comAutoSend.caption() == kStopRepeatCaption; }
  bool goesRound() const { return panel_.comSpreadAutoSend.caption() == kStopRoundCaption; }
  void stopAutoSends();

  std::uint32_t txTotal() const { return txTotal_; }
  int spreadNext() const { return spreadNext_; }
  void clearCount();

 private:
  void sendHex(const std::string& text);
  void write(std::span<const std::uint8_t> bytes);
  void refuse(const char* words);
  void toggle(platform::Button& button, platform::Timer& timer, const platform::TextBox& interval,
              const char* stopCaption, const char* tooSmall);
  void stopRepeat();
  void stopRound();
  int nextFilled() const;
  void showCount();

  platform::World world_;
  ToolPort& port_;
  ToolPanel& panel_;
  platform::Timer timerDebugAutoSend_;
  platform::Timer timerSpreadAutoSend_;
  int spreadNext_ = 0;
  std::uint32_t txTotal_ = 0;
};

}  // namespace kvr::comtool
