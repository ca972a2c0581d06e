#include "comtool/send_area.h"

#include <algorithm>
#include <array>

#include "comtool/hex_text.h"
#include "comtool/text_cells.h"
#include "platform/text.h"

namespace kvr::comtool {

namespace {

constexpr int kStrings = static_cast<int>(ToolPanel::kStrings);
constexpr double kLongestInterval = 24.0 * 3600 * 1000;
constexpr std::array<std::string_view, 4> kLineEnds{"", "\r", "\n", "\r\n"};

std::span<const std::uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

SendArea::SendArea(platform::World world, ToolPort& port, ToolPanel& panel)
    : world_(world),
      port_(port),
      panel_(panel),
      timerDebugAutoSend_(
          world.loop, [this] { TimerDebugAutoSend_Timer(); }, platform::Timer::Kind::Periodic),
      timerSpreadAutoSend_(
          world.loop, [this] { TimerSpreadAutoSend_Timer(); }, platform::Timer::Kind::Periodic) {
  panel_.comDebugSend.onClick = [this] { comDebugSend_Click(); };
  panel_.comClearSend.onClick = [this] { panel_.texSend.clear(); };
  panel_.comAutoSend.onClick = [this] { comAutoSend_Click(); };
  panel_.comSpreadAutoSend.onClick = [this] { comSpreadAutoSend_Click(); };
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i)
    panel_.comSpreadSendCom[i].onClick = [this, i] { comSpreadSendCom_Click(static_cast<int>(i)); };
  panel_.texReceive.onKeyPress = [this](char32_t key) { return texReceive_KeyPress(key); };
}

void SendArea::sendToolText(const std::string& text, bool asHex) {
  if (!port_.makeReady()) return;
  if (asHex) return sendHex(text);
  const int lineEnd = std::clamp(panel_.comb_LineEnd.listIndex(), 0, static_cast<int>(kLineEnds.size()) - 1);
  write(bytesOf(text + std::string(kLineEnds[static_cast<std::size_t>(lineEnd)])));
}

void SendArea::sendHex(const std::string& text) {
  const HexText parsed = parseHexText(text);
  if (parsed.fault == HexText::Fault::BadCharacter) return refuse(kBadHex);
  if (parsed.fault == HexText::Fault::TooLong) return refuse(kLongHex);
  write(parsed.bytes);
}

// The automatic sends end first: while the message stands, their ticks would bring it up again and again.
void SendArea::refuse(const char* words) {
  stopAutoSends();
  world_.dialogs.message("KVR-ISP", words);
}

void SendArea::sendBytes(std::span<const std::uint8_t> bytes) {
  if (port_.makeReady()) write(bytes);
}

void SendArea::write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return;
  txTotal_ += static_cast<std::uint32_t>(bytes.size());
  showCount();
  port_.write(bytes);
}

void SendArea::comDebugSend_Click() {
  sendToolText(panel_.texSend.text(), panel_.optHexSend[1].value());
}

void SendArea::comAutoSend_Click() {
  if (repeats()) return stopRepeat();
  toggle(panel_.comAutoSend, timerDebugAutoSend_, panel_.texSendCycle, kStopRepeatCaption,
         "The interval is too small.");
}

void SendArea::comSpreadAutoSend_Click() {
  if (goesRound()) return stopRound();
  toggle(panel_.comSpreadAutoSend, timerSpreadAutoSend_, panel_.texSpreadSendCycle, kStopRoundCaption,
         "The interval too short");
}

void SendArea::toggle(platform::Button& button, platform::Timer& timer, const platform::TextBox& interval,
                      const char* stopCaption, const char* tooSmall) {
  const double millis = platform::valueOf(interval.text());
  if (millis < 1) {
    timer.stop();
    return world_.dialogs.message("KVR-ISP", tooSmall);
  }
  timer.start(platform::Millis(platform::roundEven(std::min(millis, kLongestInterval))));
  button.setCaption(stopCaption);
}

void SendArea::TimerDebugAutoSend_Timer() {
  if (port_.outBytesPending() <= kMaxQueued) comDebugSend_Click();
}

void SendArea::comSpreadSendCom_Click(int index) {
  const auto element = static_cast<std::size_t>(index);
  sendToolText(panel_.texSpreadSend[element].text(), panel_.cheSpreadHex[element].value());
  spreadNext_ = (index + 1) % kStrings;
}

// One string a tick. A turn in which nothing can go out (a run has the port) leaves the round where it is.
void SendArea::TimerSpreadAutoSend_Timer() {
  const int next = nextFilled();
  if (next < 0) return stopRound();
  if (port_.outBytesPending() > kMaxQueued || !port_.makeReady()) return;
  comSpreadSendCom_Click(next);
}

// From `spreadNext` to the end, then from the beginning; -1: all strings are blank.
int SendArea::nextFilled() const {
  for (int i = 0; i < kStrings; ++i) {
    const int index = (spreadNext_ + i) % kStrings;
    if (!panel_.texSpreadSend[static_cast<std::size_t>(index)].trimmed().empty()) return index;
  }
  return -1;
}

bool SendArea::texReceive_KeyPress(char32_t key) {
  if (!port_.holds()) return false;
  write(bytesOf(utf8Of(key)));
  return true;
}

void SendArea::stopRepeat() {
  panel_.comAutoSend.setCaption(kRepeatCaption);
  timerDebugAutoSend_.stop();
}

void SendArea::stopRound() {
  panel_.comSpreadAutoSend.setCaption(kRoundCaption);
  timerSpreadAutoSend_.stop();
}

void SendArea::stopAutoSends() {
  stopRepeat();
  stopRound();
}

void SendArea::clearCount() {
  txTotal_ = 0;
  showCount();
}

void SendArea::showCount() {
  panel_.labSendCount.setCaption("Send counter:" + std::to_string(txTotal_));
}

}  // namespace kvr::comtool
