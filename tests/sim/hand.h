// Frames made by hand, one at a time, to try the simulated chip itself.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "catalogue/mcu_record.h"
#include "sim/chip.h"
#include "sim/wire.h"

namespace sim::testing {

inline const McuRecord& model(std::string_view name) {
  const McuRecord* row = kvr::catalogue::findByName(name);
  if (!row) ADD_FAILURE() << "no model " << name;
  return row ? *row : kvr::catalogue::allRows().front();
}

class Hand {
 public:
  explicit Hand(ChipConfig config, WireConfig wireConfig = {}) : chip(config), wire(std::move(wireConfig)) {
    wire.connect(&chip);
    chip.powerOn(0);
    wide = config.row->frame2;
    line = {9600, config.row->parityUsed ? 'e' : 'n'};
    wire.open(line, now);
  }

  Bytes frame(int command, const Bytes& payload) const {
    const int length = static_cast<int>(payload.size()) + (wide ? 7 : 6);
    Bytes bytes = {0x46, 0xB9, 0x6A, 0, static_cast<std::uint8_t>(length), static_cast<std::uint8_t>(command)};
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    int sum = 0;
    for (std::size_t i = 2; i < bytes.size(); ++i) sum += bytes[i];
    if (wide) bytes.push_back(static_cast<std::uint8_t>(sum >> 8));
    bytes.push_back(static_cast<std::uint8_t>(sum));
    bytes.push_back(0x16);
    return bytes;
  }

  // What has come after `milliseconds`, from the direction byte on, or nothing.
  Bytes wait(int milliseconds) {
    now += milliseconds * kMillisecond;
    Bytes got = wire.take(now);
    const auto start = std::search(got.begin(), got.end(), kStart.begin(), kStart.end());
    if (start == got.end()) return {};
    return {start + 2, got.end()};
  }
  Bytes ask(const Bytes& bytes, int milliseconds) {
    wire.clearIn(now);
    wire.write(bytes, now);
    return wait(milliseconds);
  }
  Bytes ask(int command, const Bytes& payload, int milliseconds) { return ask(frame(command, payload), milliseconds); }
  Bytes generic(int argument = 0) const {
    const std::string_view code = chip.row().code;
    const auto hex = [&](std::size_t at) {
      return static_cast<std::uint8_t>(std::stoi(std::string(code.substr(at, 2)), nullptr, 16));
    };
    return {
        static_cast<std::uint8_t>(sim::familyOf(chip.row())), static_cast<std::uint8_t>(argument), 0x36, 0x01, hex(0),
        code.size() == 4 ? hex(2) : std::uint8_t{0xFF}};
  }
  void setLine(const Line& settings) {
    now = std::max(now, wire.drainedAt());
    line = settings;
    wire.close(now);
    wire.open(line, now);
  }
  // Sync bytes until the chip answers, with the pauses of a patient host; empty after ten seconds.
  Bytes sync(int pauseMs = 10) {
    Bytes got;
    for (int i = 0; i < 10000 / pauseMs && got.empty(); ++i) got = ask({0x7F, 0x7F}, pauseMs);
    wait(200);
    return lastFrame();
  }
  // The last frame that the chip said, by the wire's own log.
  Bytes lastFrame() const {
    for (auto unit = wire.log().rbegin(); unit != wire.log().rend(); ++unit)
      if (unit->direction == Direction::deviceToHost) return {unit->bytes.begin() + 2, unit->bytes.end()};
    return {};
  }

  Chip chip;
  Wire wire;
  Micros now = 0;
  bool wide = false;
  Line line;

 private:
  inline static const Bytes kStart = {0x46, 0xB9, 0x68};
};

}  // namespace sim::testing
