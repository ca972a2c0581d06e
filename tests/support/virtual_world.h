// The virtual world around a bench: services in memory, and a port that leads to a simulated wire, with a chip on it.
#pragma once

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

#include "platform/controls.h"
#include "sim/board.h"
#include "sim/chip.h"
#include "sim/demo_firmware.h"
#include "sim/wire.h"
#include "tests/support/memory_services.h"
#include "tests/support/virtual_link.h"

namespace kvr::support {

struct VirtualWorld : MemoryServices<> {
  explicit VirtualWorld(sim::WireConfig wireConfig = {}) : wire(std::move(wireConfig)) {}
  VirtualWorld(const VirtualWorld&) = delete;
  VirtualWorld& operator=(const VirtualWorld&) = delete;

  // Each takes the place of the device on the wire, and powers up `after` from now.
  sim::Chip& insertChip(const sim::ChipConfig& config, platform::Millis after = platform::Millis(100)) {
    return connect(chip, config, after);
  }
  sim::Board& connectBoard(const sim::BoardConfig& config, platform::Millis after) {
    return connect(board, config, after);
  }
  sim::DemoFirmware& connectDemo(const sim::DemoConfig& config) { return connect(demo, config, platform::Millis(0)); }

  // Presses a button and lets what it starts come to its end. False: it still runs at the limit.
  bool press(platform::Button& button, platform::Millis limit = std::chrono::hours(1)) {
    bool done = false;
    loop.post([&] {
      button.press();
      done = true;
    });
    return loop.runUntil([&] { return done; }, limit);
  }

  // The moments at which a run waits, in ms after `start`: around every frame of the log and between them.
  std::set<int> moments(sim::Micros start = 0) const {
    std::set<int> all;
    for (const sim::Unit& unit : wire.log())
      if (unit.bytes.size() > 2)
        for (const sim::Micros at : {unit.start - 2000, unit.start + 1000, unit.end + 1000, unit.end + 12000})
          all.insert(static_cast<int>(std::max<sim::Micros>(at - start, 0) / 1000));
    return all;
  }

  sim::Wire wire;
  std::unique_ptr<sim::Chip> chip;
  std::unique_ptr<sim::Board> board;
  std::unique_ptr<sim::DemoFirmware> demo;
  VirtualLink link{loop, wire};
  platform::World world = with(link);

 private:
  template <class Device, class Config>
  Device& connect(std::unique_ptr<Device>& place, const Config& config, platform::Millis after) {
    wire.connect(nullptr);
    place = std::make_unique<Device>(config);
    wire.connect(place.get());
    place->powerOn((loop.now() + after).count());
    return *place;
  }
};

}  // namespace kvr::support
