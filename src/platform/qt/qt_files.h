// Files of the real machine. A replacement is written beside the old file and takes its name in one step.
#pragma once

#include "platform/file_system.h"

namespace kvr::platform {

class QtFiles : public FileSystem {
 public:
  std::optional<Bytes> read(const std::string& path, std::size_t limit = 0) const override;
  [[nodiscard]] FileResult replace(const std::string& path, std::span<const std::uint8_t> bytes) override;
  [[nodiscard]] FileResult appendLine(const std::string& path, std::string_view line, std::string_view header) override;
  bool fileExists(const std::string& path) const override;
  bool folderExists(const std::string& path) const override;
  [[nodiscard]] FileResult makeFolder(const std::string& path) override;
  std::optional<std::string> stamp(const std::string& path) const override;
  std::string changedAt(const std::string& path) const override;
  std::string absolute(const std::string& path) const override;
  std::string programFolder() const override;
};

}  // namespace kvr::platform
