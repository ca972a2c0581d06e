// Files of the real machine. A replacement is written beside the old file and takes its name in one step. A disk that
// does not answer (a share whose server is gone) costs the window two seconds, once for each file; then its files are
// not there until it answers again.
#pragma once

#include <chrono>

#include "platform/file_system.h"
#include "platform/qt/bounded_calls.h"
#include "platform/qt/file_calls.h"

namespace kvr::platform {

class QtFiles : public FileSystem {
 public:
  std::optional<Bytes> read(const std::string& path, std::size_t limit = 0) const override;
  [[nodiscard]] FileResult replace(const std::string& path, std::span<const std::uint8_t> bytes) override;
  [[nodiscard]] FileResult appendLine(const std::string& path, std::string_view line, std::string_view header) override;
  std::unique_ptr<GrowingFile> grow(const std::string& path, FileResult& why) override;
  [[nodiscard]] FileResult remove(const std::string& path) override;
  bool fileExists(const std::string& path) const override;
  bool folderExists(const std::string& path) const override;
  [[nodiscard]] FileResult makeFolder(const std::string& path) override;
  std::optional<std::string> stamp(const std::string& path) const override;
  std::string changedAt(const std::string& path) const override;
  std::string absolute(const std::string& path) const override;
  std::string programFolder() const override;
  std::string stateFolder() const override;
  std::vector<std::string> filesIn(const std::string& folder) const override;

 private:
  PathState stateOf(const std::string& path) const;
  mutable BoundedCalls calls_{std::chrono::seconds(2)};  // what it keeps is no part of what the files are
};

}  // namespace kvr::platform
