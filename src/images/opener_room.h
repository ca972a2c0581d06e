// Opening files: the two file buttons with their dialog, files dropped onto the window, and the paths that the settings
// keep.
#pragma once

#include <functional>
#include <string>

#include "images/loader_room.h"
#include "images/recent_files.h"

namespace kvr::images {

class Opener {
 public:
  Opener(platform::World& world, platform::Activity& activity, ImageSlots& slots, Loader& loader);

  void askAndOpen(ImageKind kind);
  // A file that was dropped onto the window or named otherwise. A project goes to `openProject`, anything else is
  // loaded. Refused, too, while something else is under way.
  LoadResult open(const std::string& path, ImageKind kind);

  // The files behind the button of that kind.
  const RecentFiles& recent(ImageKind kind) const { return kind == ImageKind::Code ? recentCode_ : recentData_; }

  // Brings up the project's page and opens it. False: the project was refused.
  std::function<bool(const std::string& path)> openProject;

 private:
  std::string askPath(const ImageSlot& slot);
  LoadResult openNow(const std::string& path, ImageSlot& slot, platform::Activity::Running running);
  void keepPath(ImageSlot& slot, const std::string& path);
  platform::World& world_;
  platform::Activity& activity_;
  ImageSlots& slots_;
  Loader& loader_;
  RecentFiles recentCode_;
  RecentFiles recentData_;
};

}  // namespace kvr::images
