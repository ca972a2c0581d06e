// What the files of the real machine ask of the system: a file of each kind of system has the calls of that one.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace kvr::platform {

enum class PathKind { Absent, File, Folder, Other };  // Other: a device, a pipe, a socket

struct PathState {
  PathKind kind = PathKind::Absent;
  std::string stamp;                // of a file: another one whenever its content may have changed
  std::int64_t changedSeconds = 0;  // of a file: its last change, since 1970 in UTC
};

// They mean what `FileSystem` says of them; `progress` counts the bytes that have come.
PathState stateOf(const std::string& path);
std::optional<Bytes> readWhole(const std::string& path, std::size_t limit, std::atomic<std::size_t>& progress);
[[nodiscard]] FileResult replaceFile(const std::string& path, std::span<const std::uint8_t> bytes);
[[nodiscard]] FileResult appendToFile(const std::string& path, std::string_view line, std::string_view header);
[[nodiscard]] FileResult removeFile(const std::string& path);
[[nodiscard]] FileResult makeFolders(const std::string& path);

}  // namespace kvr::platform
