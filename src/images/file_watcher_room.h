// Watches the code file in hand, which another program, such as a compiler, rewrites, and starts a download when a
// whole new file is there.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "images/reload_room.h"

namespace kvr::images {

class FileWatcher {
 public:
  FileWatcher(platform::World& world, platform::Activity& activity, ImagePanel& panel, const ImageState& state,
              const Loader& loader, Reloader& reloader);

  std::function<void()> onTrigger;   // the new file is loaded: send the self-defined command
  std::function<void()> onDownload;  // the new file is loaded: download

 private:
  void listen();
  bool wanted() const;
  void notePresent();
  void tick();
  std::optional<FileContent> newVersion();
  void start(const FileContent& content);
  platform::World& world_;
  platform::Activity& activity_;
  ImagePanel& panel_;
  const ImageState& state_;
  const Loader& loader_;
  Reloader& reloader_;
  std::string seenPath_;
  std::string seenStamp_;  // of the version from which a new one differs
  std::string candidate_;  // a new stamp, seen at the last tick
  platform::Timer ticks_;
  std::vector<platform::Signal::Token> tokens_;
};

}  // namespace kvr::images
