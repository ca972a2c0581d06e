// The terminal with a port that a test plays: it lets bytes arrive and sees what was written, without the time of a
// wire.
#pragma once

#include <algorithm>
#include <deque>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "comtool/tool_room.h"
#include "platform/virtual/plain_codec.h"
#include "tests/support/memory_services.h"
#include "tests/support/no_link.h"

namespace kvr::comtool {

using platform::Millis;
using Bytes = std::vector<std::uint8_t>;

inline Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

// The rows that the pane shows.
inline std::vector<std::string> rowsOf(const PaneText& text) {
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < text.rowCount(); ++i) rows.emplace_back(text.row(i).shown());
  return rows;
}

class PlayedLink : public support::NoLink {
 public:
  explicit PlayedLink(platform::EventLoop& loop) : event_(loop, [this] { receive_(); }) {}

  void arrive(const Bytes& bytes) {
    waiting.insert(waiting.end(), bytes.begin(), bytes.end());
    event_.raise();
  }
  void pullOut() {
    opened = false;
    vanished_({platform::PortError::Kind::Vanished, "COM3: the adapter was pulled out"});
  }

  void setPortNumber(int to) override { number = to; }
  int portNumber() const override { return number; }
  platform::PortError setSettings(const std::string& text) override {
    if (settingsError) return settingsError;
    current = text;
    return {};
  }
  std::string settings() const override { return current; }
  platform::PortError open() override {
    if (openError) return openError;
    opened = dtr = rts = true;
    ++opens;
    return {};
  }
  void close() override {
    opened = false;
    waiting.clear();
    event_.withdraw();
  }
  bool isOpen() const override { return opened; }
  void write(std::span<const std::uint8_t> bytes) override {
    if (opened) sent.insert(sent.end(), bytes.begin(), bytes.end());
  }
  std::size_t outBytesPending() const override { return pendingOut; }
  std::size_t inBytesPending() const override { return waiting.size(); }
  std::vector<std::uint8_t> readBytes(std::size_t maxCount) override {
    const auto count = static_cast<std::ptrdiff_t>(maxCount == 0 ? waiting.size() : std::min(maxCount, waiting.size()));
    Bytes bytes(waiting.begin(), waiting.begin() + count);
    waiting.erase(waiting.begin(), waiting.begin() + count);
    return bytes;
  }
  std::vector<std::uint8_t> peekBytes() override { return {waiting.begin(), waiting.end()}; }
  void clearOut() override { pendingOut = 0; }
  void clearIn() override { waiting.clear(); }
  void setDtr(bool on) override { dtr = on; }
  void setRts(bool on) override { rts = on; }
  platform::PortError setFlowControl(platform::FlowControl to) override {
    if (!flowError) flow = to;
    return flowError;
  }
  void setBreak(bool on) override { breaking = on; }
  std::optional<platform::InputLines> inputLines() const override { return input; }
  int trueBaud() const override { return made; }

  std::deque<std::uint8_t> waiting;
  Bytes sent;
  std::string current = "9600,n,8,1";
  int number = 1;
  int opens = 0;
  bool opened = false, dtr = false, rts = false;
  std::size_t pendingOut = 0;
  platform::PortError openError, settingsError, flowError;
  platform::FlowControl flow = platform::FlowControl::None;
  bool breaking = false;
  std::optional<platform::InputLines> input = platform::InputLines{};
  int made = 0;  // the rate that the port really runs at

 private:
  platform::PortEvent event_;
};

struct ToolBench : support::MemoryServices<> {
  PlayedLink link{loop};
  platform::World world = with(link);
  engine::PortLease lease{loop, link};
  platform::Activity activity;
  platform::UiLock lock;
  ToolPanel panel;
  platform::ComboBox combCommPort{"combCommPort"};
  platform::Lamp imgOpen_sys{"imgOpen_sys"};
  bool holdsPort() const { return tool.holdsPort(); }
  platform::PlainCodec codec;
  ToolRoom tool{{world, lease, activity, lock, panel, {combCommPort, imgOpen_sys}, codec}};

  ToolBench() {
    combCommPort.setItems({"COM1", "COM2", "COM3"});
    combCommPort.setListIndex(0);
  }
  void open() { panel.comOpenCOM[0].press(); }
  void repeat(const char* text, const char* cycle = "1000") {
    panel.texSend.setText(text);
    panel.texSendCycle.setText(cycle);
    panel.comAutoSend.press();
  }
  void rounds(const std::vector<const char*>& texts, const char* cycle = "1000") {
    for (std::size_t i = 0; i < texts.size(); ++i) panel.texSpreadSend[i].setText(texts[i]);
    panel.texSpreadSendCycle.setText(cycle);
    panel.comSpreadAutoSend.press();
  }
  // Neither the repeat nor the round goes on.
  bool automaticSendsRest() const {
    return panel.comAutoSend.caption() == "Repeat Send" && panel.comSpreadAutoSend.caption() == "Round Send";
  }
  std::string received() const { return panel.labReceiveCount.caption().substr(16); }
  void showHex() { panel.optReceiveHex[1].userChoose(); }
  // The bytes arrive as one read, and the pane shows them.
  void arriveAndShow(const Bytes& bytes) {
    link.arrive(bytes);
    loop.runFor(Millis(50));
  }
  void arriveAndShow(std::string_view text) { arriveAndShow(bytesOf(text)); }
  std::string shown() const { return panel.texReceive.text(); }
  std::string sentText() const { return {link.sent.begin(), link.sent.end()}; }
  std::string lastMessage() const { return dialogs.shown.empty() ? "" : dialogs.shown.back().text; }
};

}  // namespace kvr::comtool
