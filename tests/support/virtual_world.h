// The virtual world around a bench: services in memory, and a port that leads to a simulated wire, with a chip on it.
#pragma once

#include <memory>
#include <utility>

#include "platform/controls.h"
#include "sim/chip.h"
#include "sim/wire.h"
#include "tests/support/memory_services.h"
#include "tests/support/virtual_link.h"

namespace kvr::support {

struct VirtualWorld : MemoryServices<> {
  explicit VirtualWorld(sim::WireConfig wireConfig = {}) : wire(std::move(wireConfig)) {}
  VirtualWorld(const VirtualWorld&) = delete;
  VirtualWorld& operator=(const VirtualWorld&) = delete;

  // Takes the place of the former chip; it powers up `after` from now.
  sim::Chip& insertChip(const sim::ChipConfig& config, platform::Millis after = platform::Millis(100)) {
    wire.connect(nullptr);
    chip = std::make_unique<sim::Chip>(config);
    wire.connect(chip.get());
    chip->powerOn((loop.now() + after).count());
    return *chip;
  }

  // Presses a button and lets what it starts come to its end. False: it still runs at the limit.
  bool press(platform::Button& button, platform::Millis limit = std::chrono::hours(1)) {
    bool done = false;
    loop.post([&] {
      button.press();
      done = true;
    });
    return loop.runUntil([&] { return done; }, limit);
  }

  sim::Wire wire;
  std::unique_ptr<sim::Chip> chip;
  VirtualLink link{loop, wire};
  platform::World world = with(link);
};

}  // namespace kvr::support
