// The off-line session with everything around it, and a simulated board at the far end of a wire.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "offline/offline_session.h"
#include "platform/virtual/virtual_world.h"
#include "sim/board.h"
#include "tests/support/wire_link.h"

namespace kvr::offline {

using platform::Millis;
using Bytes = std::vector<std::uint8_t>;

inline Bytes seededNoise(std::size_t size, std::uint32_t seed) {
  Bytes bytes(size);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
  return bytes;
}

struct OfflineBench {
  explicit OfflineBench(sim::BoardConfig config = {}, sim::WireConfig wireConfig = {})
      : wire(std::move(wireConfig)), board(std::move(config)) {
    wire.connect(&board);
    combCommPort.setItems({"COM1", "COM2", "COM3"});
    combCommPort.setListIndex(2);
    session.composeOptions = [this] {
      for (std::size_t i = 0; i < options.wanted.size(); ++i) options.wanted[i] = static_cast<std::uint8_t>(0xA0 + i);
    };
    session.stopOperation = [this] {
      ++stops;
      link.stopRequested = true;
      link.clearQueues();
      link.closeTargetPort();
      lock.toFree();
    };
    download.comStop_Download.onClick = [this] {
      link.stopRequested = true;
      link.closeTargetPort();
    };
    select("Ivy-HF0S");
  }

  void select(std::string_view name) {
    const catalogue::McuRecord* record = catalogue::findByName(name);
    if (!record) throw std::runtime_error("no model " + std::string(name));
    model = catalogue::describeModel(*record);
    txtDevice.setText(std::string(name));
  }
  void loadCode(int size, std::uint32_t seed = 7) {
    code = seededNoise(static_cast<std::size_t>(size), seed);
    load(images.CodeBuffer, code);
    images.imageValid = true;
  }
  void loadData(int size) { load(images.EepromBuffer, seededNoise(static_cast<std::size_t>(size), 99)); }
  static void load(images::ImageBuffer& buffer, const Bytes& bytes) {
    buffer.put(0, bytes);
    buffer.rangeStart = 0;
    buffer.rangeEnd = static_cast<int>(bytes.size()) - 1;
    buffer.loaded = true;
  }
  // The operator presses the button; the board gets its power so much later.
  void run(Millis powerAfter = Millis(3000)) {
    board.powerOn((loop.now() + powerAfter).count());
    panel.comTJXZ.press();
  }
  int lines(std::string_view line) const {
    int count = 0;
    const std::string text = "\n" + textMsg.text() + "\n";
    const std::string wanted = "\n" + std::string(line) + "\n";
    for (auto at = text.find(wanted); at != std::string::npos; at = text.find(wanted, at + 1)) ++count;
    return count;
  }
  bool saidOk() const { return lines("Program OK.") + lines("Download OK. / 下载成功。") > 0; }
  std::string lastMessage() const { return dialogs.shown.empty() ? "" : dialogs.shown.back().text; }
  bool idle() const { return !link.isOpen() && lock.free() && !activity.busy() && !link.rx.boardCrcMode; }

  // Whether the board holds what this board was to be sent of the image.
  bool boardHoldsImage() const {
    const auto image = session.image().bytes();
    const auto& memory = board.memory();
    const auto same = [](auto from, int first, int last, const Bytes& to, int at) {
      return std::equal(from.begin() + first, from.begin() + last + 1, to.begin() + at);
    };
    const BoardFacts& facts = session.board();
    const std::span<const std::uint8_t> chipCode(kept);
    if (!same(chipCode, 0, kMainCodeSize - 1, memory.main, kMainCodeAt)) return false;
    if (!same(image, 0xEC00, facts.firstStageLast(), memory.main, 0xEC00)) return false;
    if (facts.singleStage()) return true;
    if (facts.secondBank) return same(chipCode, 44032, 63487, memory.second, kMainCodeAt);
    return same(chipCode, 44032, 52223, memory.main, kSecondCodeAt);
  }
  // What the chip is to hold, for `boardHoldsImage`.
  void keepWanted() {
    kept = prepareFileBuffer(model.record, view(images.CodeBuffer), view(images.EepromBuffer)).bytes;
  }
  static ImageView view(const images::ImageBuffer& buffer) {
    return {buffer.bytes(), buffer.rangeStart, buffer.rangeEnd, buffer.loaded};
  }

  platform::VirtualLoop loop;
  sim::Wire wire;
  sim::Board board;
  support::WireLink port{loop, wire};
  platform::ScriptedDialogs dialogs{loop};
  platform::MemoryStore store;
  platform::MemoryFiles files;
  platform::VirtualClock clock{loop};
  platform::World world{loop, port, dialogs, store, files, clock};
  catalogue::SelectedModel model;
  engine::Activity activity;
  options::UiLock lock;
  options::OptionSet options;
  engine::DownloadPanel download;
  platform::TextBox textMsg{"textMsg"};
  platform::TextBox txtDevice{"txtDevice"};
  platform::ComboBox combCommPort{"combCommPort"};
  platform::Lamp imgOpen_sys{"imgOpen_sys"};
  platform::ProgressBar ProgressBar1{"ProgressBar1"};
  platform::Label labKbyte{"labKbyte"};
  engine::PortLease lease{loop, port};
  engine::TargetLink link{world, lease, model, download, {textMsg, combCommPort, imgOpen_sys, ProgressBar1, labKbyte}};
  images::ImageState images;
  images::ImagePanel counters;
  OfflinePanel panel;
  OfflineSession session{{link, activity, lock, options, images, counters, txtDevice}, panel};
  Bytes code;
  Bytes kept;
  int stops = 0;
};

}  // namespace kvr::offline
