// The folder of traces: the newest 50 stay.
#pragma once

#include <string>

#include "engine/trace.h"
#include "platform/file_system.h"

namespace kvr::engine {

class TraceFiles {
 public:
  static constexpr std::size_t kKept = 50;
  explicit TraceFiles(platform::FileSystem& files) : files_(files) {}

  std::string folder() const { return files_.stateFolder() + "/traces"; }
  // "KVR-ISP_2030-01-01_12-00-00_Ivy-HF0S_failed.txt"
  static std::string nameOf(const Trace& trace);
  // Writes the file whole under the trace's name, and removes the oldest ones of that folder.
  [[nodiscard]] platform::FileResult keep(const Trace& trace);
  [[nodiscard]] platform::FileResult write(const Trace& trace, const std::string& path);
  const std::string& lastKept() const { return lastKept_; }  // path; empty: none since the start

 private:
  std::string freePath(const Trace& trace) const;
  platform::FileResult removeOldest();
  platform::FileSystem& files_;
  std::string lastKept_;
};

}  // namespace kvr::engine
