// The files of one kind that were opened last, the newest first, in the settings that all windows share.
#pragma once

#include <string>
#include <vector>

#include "platform/world.h"

namespace kvr::images {

struct RecentFile {
  std::string path;
  bool gone;  // it cannot be opened now; it may be back tomorrow, such as one on a stick
  bool operator==(const RecentFile&) const = default;
};

class RecentFiles {
 public:
  static constexpr std::size_t kMost = 10;
  // `key`: of the settings, followed by a number for each path.
  RecentFiles(const platform::World& world, std::string key) : world_(world), key_(std::move(key)) {}

  // To the front; the oldest goes when there are too many. Where the settings cannot be saved, the list lasts as long
  // as the window.
  void add(const std::string& path);
  // Asks the disk about each file.
  std::vector<RecentFile> list() const;

 private:
  std::vector<std::string> paths() const;
  platform::World world_;
  std::string key_;
  bool saved_ = true;
  std::vector<std::string> unsaved_;
};

}  // namespace kvr::images
