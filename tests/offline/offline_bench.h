// The off-line session with everything around it, and a simulated board at the far end of a wire.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "offline/offline_room.h"
#include "sim/board.h"
#include "tests/support/engine_bench.h"

namespace kvr::offline {

using platform::Millis;
using Bytes = std::vector<std::uint8_t>;

inline Bytes seededNoise(std::size_t size, std::uint32_t seed) {
  Bytes bytes(size);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>((seed = seed * 1664525 + 1013904223) >> 24);
  return bytes;
}

struct OfflineBench : support::EngineBench {
  explicit OfflineBench(sim::BoardConfig config = {}, sim::WireConfig wireConfig = {})
      : EngineBench(std::move(wireConfig)), board(std::move(config)) {
    wire.connect(&board);
    choose("Ivy-HF0S");
    lock.set(kvr::platform::UiLock::kFree);  // the window's start ends with this
  }

  void choose(std::string_view name) {
    select(name);
    txtDevice.setText(std::string(name));
  }
  void loadNoise(int size, std::uint32_t seed = 7) {
    code = seededNoise(static_cast<std::size_t>(size), seed);
    load(images.CodeBuffer, code);
    images.imageValid = true;
  }
  void loadEeprom(int size) {
    eeprom = seededNoise(static_cast<std::size_t>(size), 99);
    load(images.EepromBuffer, eeprom);
  }
  static void load(kvr::images::ImageBuffer& buffer, const Bytes& bytes) {
    buffer.fill(0);  // as the loader does
    buffer.put(0, bytes);
    buffer.rangeStart = 0;
    buffer.rangeEnd = static_cast<int>(bytes.size()) - 1;
    buffer.loaded = true;
  }
  // Serial values of four bytes that end at the address, 7 from chip to chip.
  void countUp(const char* address, const char* next, bool data = false) {
    (data ? counters.cheData_Auto_Increase : counters.cheAuto_Increase).setValue(true);
    (data ? counters.optData_Auto_Increase : counters.optAuto_Increase)[0].setValue(true);
    auto& boxes = data ? counters.texData_Auto_Increase : counters.texAuto_Increase;
    for (std::size_t i = 0; const char* text : {address, "4", next, "7"}) boxes[i++].setText(text);
  }
  // The operator presses the button; the board gets its power so much later.
  void run(Millis powerAfter = Millis(3000)) {
    board.powerOn((loop.now() + powerAfter).count());
    page.comTJXZ.press();
  }
  bool saidOk() const { return lines("Program OK.") + lines("Download OK. / 下载成功。") > 0; }
  std::string lastMessage() const { return dialogs.shown.empty() ? "" : dialogs.shown.back().text; }
  bool idle() const { return notAtRest().empty(); }

  // Whether the board holds what this board was to be sent of the image.
  bool boardHoldsImage() const {
    const auto image = offline.image().bytes();
    const auto& memory = board.memory();
    const auto same = [](auto from, int first, int last, const Bytes& to, int at) {
      return std::equal(from.begin() + first, from.begin() + last + 1, to.begin() + at);
    };
    const BoardFacts& facts = offline.board();
    const std::span<const std::uint8_t> chipCode(kept);
    if (!same(chipCode, 0, kMainCodeSize - 1, memory.main, kMainCodeAt)) return false;
    if (!same(image, 0xEC00, facts.firstStageLast(), memory.main, 0xEC00)) return false;
    if (facts.singleStage()) return true;
    if (facts.secondBank) return same(chipCode, 44032, 63487, memory.second, kMainCodeAt);
    return same(chipCode, 44032, 52223, memory.main, kSecondCodeAt);
  }
  // What the chip is to hold, by what was loaded: the code from 0 on, the data where the chip has its data memory.
  void keepWanted() {
    kept.assign(65536, 0);
    std::copy(code.begin(), code.end(), kept.begin());
    std::copy(eeprom.begin(), eeprom.end(), kept.begin() + model.record.dataStart);
  }

  sim::Board board;
  platform::TextBox txtDevice{"txtDevice"};
  kvr::images::ImagePanel& counters = imageRoom.panel;
  OfflinePanel page;
  OfflineRoom offline{runs, dialogs, jobPanels, imageRoom, txtDevice, page};
  Bytes code;
  Bytes eeprom;
  Bytes kept;
};

}  // namespace kvr::offline
