#include "images/recent_files.h"

#include <algorithm>

namespace kvr::images {
namespace {

constexpr const char* kSection = "Settings";
constexpr std::chrono::milliseconds kPatience{500};  // a share whose server is gone answers late, if at all

}  // namespace

// Another window may have opened files meanwhile.
std::vector<std::string> RecentFiles::paths() const {
  if (!saved_) return unsaved_;
  std::vector<std::string> found;
  for (std::size_t i = 0; i < kMost; ++i) {
    const auto path = world_.store.fresh(kSection, key_ + std::to_string(i));
    if (path && !path->empty()) found.push_back(*path);
  }
  return found;
}

void RecentFiles::add(const std::string& path) {
  std::vector<std::string> all = paths();
  std::erase(all, path);
  all.insert(all.begin(), path);
  all.resize(std::min(all.size(), kMost));
  for (std::size_t i = 0; i < all.size(); ++i) world_.store.set(kSection, key_ + std::to_string(i), all[i]);
  saved_ = world_.store.flush().ok;
  if (!saved_) unsaved_ = all;
}

std::vector<RecentFile> RecentFiles::list() const {
  std::vector<RecentFile> files;
  const auto begun = world_.loop.now();
  for (const std::string& path : paths()) {
    const bool slow = world_.loop.now() - begun > kPatience;
    files.push_back({path, !slow && !world_.files.fileExists(path)});
  }
  return files;
}

}  // namespace kvr::images
