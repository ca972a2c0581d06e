#include "comtool/send_area.h"

#include <algorithm>
#include <array>

#include "comtool/hex_text.h"
#include "comtool/text_cells.h"
#include "platform/text.h"

namespace kvr::comtool {

using platform::Encoding;

namespace {

constexpr double kLongestInterval = 24.0 * 3600 * 1000;
constexpr std::array<std::string_view, 4> kLineEnds{"", "\r", "\n", "\r\n"};

}  // namespace

std::string_view lineEndOf(const ToolPanel& panel) {
  const int line = std::clamp(panel.comb_LineEnd.listIndex(), 0, static_cast<int>(kLineEnds.size()) - 1);
  return kLineEnds[static_cast<std::size_t>(line)];
}

SendArea::SendArea(const ToolContext& context, PortArea& port)
    : dialogs_(context.world.dialogs),
      activity_(context.activity),
      lock_(context.lock),
      port_(port),
      panel_(context.panel),
      repeatTimer_(
          context.world.loop,
          [this] {
            if (!port_.overfull()) sendSingle();
          },
          platform::Timer::Kind::Periodic),
      roundTimer_(
          context.world.loop, [this] { sendNextString(); }, platform::Timer::Kind::Periodic),
      codec_(context.codec) {
  connectButtons();
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
}

void SendArea::connectButtons() {
  panel_.comDebugSend.onClick = [this] { sendLine(); };
  panel_.comSendOlder.onClick = [this] { recall(history_.older(panel_.texSend.text())); };
  panel_.comSendNewer.onClick = [this] { recall(history_.newer()); };
  panel_.comClearSend.onClick = [this] { panel_.texSend.clear(); };
  panel_.comAutoSend.onClick = [this] { toggleRepeat(); };
  panel_.comSpreadAutoSend.onClick = [this] { toggleRound(); };
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i)
    panel_.comSpreadSendCom[i].onClick = [this, i] { sendString(i); };
  panel_.texReceive.onKeyPress = [this](char32_t key) { return sendKey(encoded(utf8Of(key))); };
  panel_.texReceive.onKeyBytes = [this](std::string_view bytes) { return sendKey(bytes); };
  panel_.texReceive.sendsKeys = [this] { return port_.holds(); };
}

// A repeat or a round that runs can be stopped also where none may be started.
void SendArea::applyLock() {
  panel_.comDebugSend.setEnabled(lock_.free());
  panel_.comAutoSend.setEnabled(lock_.free() || (!lock_.busy() && repeats()));
  panel_.comSpreadAutoSend.setEnabled(!lock_.busy() || goesRound());
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i) panel_.comSpreadSendCom[i].setEnabled(!lock_.busy());
}

void SendArea::sendText(const std::string& text, bool asHex) {
  if (!port_.makeReady()) return;
  if (asHex) return sendHex(text);
  write(encoded(text + std::string(lineEndOf(panel_))));
}

std::string SendArea::encoded(std::string_view text) const {
  const auto encoding = encodingOf(panel_);
  const bool utf8 = encoding == Encoding::Utf8 || (encoding == Encoding::System && codec_.systemIsUtf8());
  return utf8 ? std::string(text) : codec_.encode(text, encoding);
}

void SendArea::sendHex(const std::string& text) {
  const HexText parsed = parseHexText(text);
  if (parsed.fault == HexText::Fault::BadCharacter) return refuse(kBadHex);
  if (parsed.fault == HexText::Fault::TooLong) return refuse(kLongHex);
  write(parsed.bytes);
}

// The automatic sends end first: while the message is up, their ticks would bring it up again and again.
void SendArea::refuse(const char* words) {
  stopAutoSends();
  dialogs_.message(platform::kTitle, words);
}

void SendArea::sendBytes(std::span<const std::uint8_t> bytes) {
  if (port_.makeReady()) write(bytes);
}

void SendArea::write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return;
  sent_ += static_cast<std::uint32_t>(bytes.size());
  showCount();
  port_.write(bytes);
  if (onSent) onSent(bytes);
}

void SendArea::sendLine() {
  history_.add(panel_.texSend.text());
  sendSingle();
}

void SendArea::recall(const std::optional<std::string>& text) {
  if (text) panel_.texSend.setText(*text);
}

void SendArea::sendSingle() {
  sendText(panel_.texSend.text(), panel_.optHexSend[1].value());
}

void SendArea::sendString(std::size_t index) {
  sendText(panel_.texSpreadSend[index].text(), panel_.cheSpreadHex[index].value());
  nextString_ = (index + 1) % ToolPanel::kStrings;
}

bool SendArea::sendKey(std::string_view bytes) {
  if (!port_.holds() || port_.overfull()) return false;
  write(platform::bytesOf(bytes));
  return true;
}

void SendArea::toggleRepeat() {
  if (repeats()) return stopRepeat();
  start(panel_.comAutoSend, repeatTimer_, panel_.texSendCycle, kStopRepeatCaption, "The interval is too small.");
}

void SendArea::toggleRound() {
  if (goesRound()) return stopRound();
  start(panel_.comSpreadAutoSend, roundTimer_, panel_.texSpreadSendCycle, kStopRoundCaption, "The interval too short");
}

void SendArea::start(platform::Button& button, platform::Timer& timer, const platform::TextBox& interval,
                     const char* stopCaption, const char* tooSmall) {
  if (activity_.busy()) return;
  const double millis = platform::valueOf(interval.text());
  if (millis < 1) {
    timer.stop();
    return dialogs_.message(platform::kTitle, tooSmall);
  }
  timer.start(platform::Millis(platform::roundEven(std::min(millis, kLongestInterval))));
  button.setCaption(stopCaption);
}

// One string a tick. A turn in which nothing can go out (a run has the port) leaves the round where it is.
void SendArea::sendNextString() {
  const auto next = nextFilled();
  if (!next) return stopRound();
  if (!port_.overfull() && port_.makeReady()) sendString(*next);
}

// From the string after the last one sent to the end, then from the beginning. None: all strings are blank.
std::optional<std::size_t> SendArea::nextFilled() const {
  for (std::size_t i = 0; i < ToolPanel::kStrings; ++i) {
    const std::size_t index = (nextString_ + i) % ToolPanel::kStrings;
    if (!panel_.texSpreadSend[index].trimmed().empty()) return index;
  }
  return std::nullopt;
}

void SendArea::stopRepeat() {
  panel_.comAutoSend.setCaption(kRepeatCaption);
  repeatTimer_.stop();
  applyLock();
}

void SendArea::stopRound() {
  panel_.comSpreadAutoSend.setCaption(kRoundCaption);
  roundTimer_.stop();
  applyLock();
}

void SendArea::stopAutoSends() {
  stopRepeat();
  stopRound();
}

void SendArea::clearCount() {
  sent_ = 0;
  showCount();
}

void SendArea::showCount() {
  panel_.labSendCount.setCaption("Send counter:" + std::to_string(sent_));
}

}  // namespace kvr::comtool
