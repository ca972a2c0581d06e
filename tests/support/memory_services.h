// What a bench lends the program in place of a machine, but for the port: a loop, settings and files in memory, a
// user who answers from a script, a clock.
#pragma once

#include <memory>
#include <utility>

#include "platform/virtual/virtual_loop.h"
#include "platform/virtual/virtual_world.h"
#include "platform/world.h"

namespace kvr::support {

template <class Loop = platform::VirtualLoop, class Store = platform::MemoryStore>
struct MemoryServices {
  MemoryServices() = default;
  // With the settings file of another window.
  explicit MemoryServices(std::shared_ptr<platform::MemoryDisk> disk) : store(std::move(disk)) {}

  Loop loop;
  Store store;
  platform::MemoryFiles files;
  platform::ScriptedDialogs dialogs{loop};
  platform::VirtualClock clock{loop};

  platform::World with(platform::SerialLink& link) { return {loop, link, dialogs, store, files, clock}; }
};

}  // namespace kvr::support
