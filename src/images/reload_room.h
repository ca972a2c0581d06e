// The same code file again: at the start of a run, or because another program has rewritten it.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "images/loader_room.h"

namespace kvr::images {

enum class ReloadResult { Ready, Failed, Stopped };

class Reloader {
 public:
  Reloader(platform::World& world, ImageSlots& slots, Loader& loader, SerialCounters& counters);

  // The code file in hand anew, for a run: waits while the file is being written, until the caller wants to stop.
  // Failed: the user has been told, and the run must end before anything is sent. An image that came from a project has
  // no file to load again and is ready as it is.
  [[nodiscard]] ReloadResult reload(const std::function<bool()>& stopAsked);

  // The file in hand as it is now; nothing while it is not whole.
  std::optional<FileContent> wholeFile() const;
  // Takes what was read of the file in hand. Counters that were on are on again afterwards, with their value in the
  // fresh image. False: it was not taken, and the user has been told.
  [[nodiscard]] bool take(const FileContent& content);

 private:
  ReloadResult refuse(const std::string& text);
  platform::World& world_;
  ImageSlots& slots_;
  Loader& loader_;
  SerialCounters& counters_;
};

}  // namespace kvr::images
