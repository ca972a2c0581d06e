// A second file beside an image: asks for it, reads it as the image's own file would be read, and lets the view show
// where the two differ.
#pragma once

#include <string>

#include "images/loader_room.h"

namespace kvr::images {

class CompareFile {
 public:
  CompareFile(platform::World& world, platform::Activity& activity, const catalogue::SelectedModel& selected,
              ImageSlots& slots, Loader& loader);

 private:
  void askAndCompare(ImageSlot& slot);
  void compare(ImageSlot& slot, const std::string& path);
  platform::World& world_;
  platform::Activity& activity_;
  const catalogue::SelectedModel& selected_;
  Loader& loader_;
};

}  // namespace kvr::images
