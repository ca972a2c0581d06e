#include "comtool/rolling_log.h"

#include <algorithm>
#include <utility>

namespace kvr::comtool {

using platform::FileResult;

std::string logName(const std::string& base, const std::string& dateTime, int part) {
  const std::size_t name = base.find_last_of('/') + 1;  // 0 for none
  const std::size_t dot = base.find_last_of('.');
  const std::size_t stem = dot == std::string::npos || dot <= name ? base.size() : dot;
  std::string stamp = "-" + dateTime;
  std::erase(stamp, ':');
  std::replace(stamp.begin(), stamp.end(), ' ', '-');
  if (part > 1) stamp += "-" + std::to_string(part);
  return base.substr(0, stem) + stamp + base.substr(stem);
}

FileResult RollingLog::start(const std::string& base, const std::string& dateTime, Limits limits) {
  base_ = base;
  dateTime_ = dateTime;
  limits_ = limits;
  kept_.clear();
  collected_.clear();
  bytes_ = 0;
  part_ = 0;
  return nextFile();
}

// The oldest file goes before the new one comes. While it cannot be removed the log ends, which keeps it bounded.
FileResult RollingLog::nextFile() {
  if (file_) file_->finish();
  full_ = std::move(file_);
  if (kept_.size() >= limits_.files) {
    const FileResult removed = files_.remove(kept_.front());
    if (removed || !files_.fileExists(kept_.front())) kept_.pop_front();
    if (kept_.size() >= limits_.files) return giveUp({false, "the oldest file cannot be removed: " + removed.error});
  }
  path_ = logName(base_, dateTime_, ++part_);
  FileResult why;
  file_ = files_.grow(path_, why);
  if (!why) return giveUp(why);
  kept_.push_back(path_);
  inFile_ = 0;
  return why;
}

FileResult RollingLog::giveUp(FileResult why) {
  file_.reset();
  collected_.clear();
  return why;
}

FileResult RollingLog::write(std::span<const std::uint8_t> bytes) {
  if (!on()) return {};
  collected_.insert(collected_.end(), bytes.begin(), bytes.end());
  return collected_.size() >= kCollect ? flush() : FileResult{};
}

FileResult RollingLog::flush() {
  std::span<const std::uint8_t> rest = collected_;
  while (on() && !rest.empty()) {
    if (inFile_ >= limits_.fileBytes)
      if (const auto next = nextFile(); !next) return next;
    const auto part =
        rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(rest.size(), limits_.fileBytes - inFile_)));
    if (const auto written = file_->write(part); !written) return giveUp(written);
    inFile_ += part.size();
    bytes_ += part.size();
    rest = rest.subspan(part.size());
  }
  collected_.clear();
  return {};
}

FileResult RollingLog::stop() {
  const FileResult last = flush();
  file_.reset();
  full_.reset();
  return last;
}

}  // namespace kvr::comtool
