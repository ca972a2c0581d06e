// Watches the code file that another program, such as a compiler, rewrites, and starts a download when a whole new file
// is there.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "images/loader.h"

namespace kvr::images {

class FileWatcher {
 public:
  FileWatcher(platform::World& world, ImagePanel& panel, ImageState& state, Loader& loader);

  void Timer12_Timer();  // once a second, for the life of the window

  // A sequence runs, a dialog is open: the change waits and counts later.
  std::function<bool()> isBusy;
  Alone alone;                       // the reload; not what follows it
  std::function<void()> onTrigger;   // the new file is loaded: send the self-defined command
  std::function<void()> onDownload;  // the new file is loaded: download

 private:
  void listen();
  bool wanted() const;
  void notePresent();
  bool isChanged();
  void start();
  platform::World& world_;
  ImagePanel& panel_;
  ImageState& state_;
  Loader& loader_;
  std::string watchedFile_;
  std::string watchedStamp_;
  std::string candidate_;  // a new stamp, seen at the last tick
  bool inTick_ = false;
  platform::Timer Timer12_;
  std::vector<platform::Signal::Token> tokens_;
};

}  // namespace kvr::images
