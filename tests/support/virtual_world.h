// The virtual world around a bench: services in memory, and a port that leads to a simulated wire.
#pragma once

#include <utility>

#include "sim/wire.h"
#include "tests/support/memory_services.h"
#include "tests/support/virtual_link.h"

namespace kvr::support {

struct VirtualWorld : MemoryServices<> {
  explicit VirtualWorld(sim::WireConfig wireConfig = {}) : wire(std::move(wireConfig)) {}
  VirtualWorld(const VirtualWorld&) = delete;
  VirtualWorld& operator=(const VirtualWorld&) = delete;

  sim::Wire wire;
  VirtualLink link{loop, wire};
  platform::World world = with(link);
};

}  // namespace kvr::support
