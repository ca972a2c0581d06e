// Everything that the program's logic asks of the world it runs in, real or virtual.
#pragma once

#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/serial_link.h"
#include "platform/settings_store.h"
#include "platform/wall_clock.h"

namespace kvr::platform {

struct World {
  EventLoop& loop;
  SerialLink& link;
  Dialogs& dialogs;
  SettingsStore& store;
  FileSystem& files;
  WallClock& clock;
};

}  // namespace kvr::platform
