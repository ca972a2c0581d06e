#include "platform/qt/file_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <memory>
#include <system_error>
#include <thread>

#include "platform/qt/file_handle_posix.h"
#include "platform/text.h"

namespace kvr::platform {
namespace {

constexpr std::size_t kReadStep = 1 << 20;
constexpr off_t kLarge = 4 << 20;
constexpr std::size_t kLongName = 240;  // beyond it the draft's own additions would not fit

// What a link leads to, whether it is there or not; any other path is its own target.
std::filesystem::path targetOf(const std::string& path) {
  std::filesystem::path at = path;
  std::error_code error;
  for (int i = 0; i < 40 && std::filesystem::is_symlink(at, error); ++i) {
    const auto to = std::filesystem::read_symlink(at, error);
    at = to.is_absolute() ? to : at.parent_path() / to;
  }
  return at;
}

// One name for all saves of a file: what a save that was killed has left is taken over by the next one.
std::string draftOf(const std::filesystem::path& target) {
  std::string name = target.filename().string();
  if (name.size() > kLongName) name = name.substr(0, kLongName / 2) + std::to_string(std::hash<std::string>()(name));
  return target.parent_path() / ("." + name + ".saving");
}

int writeDraft(const FileHandle& draft, std::span<const std::uint8_t> bytes, const std::string& target) {
  if (!S_ISREG(draft.state().st_mode)) return ENXIO;
  if (::ftruncate(draft.number(), 0) != 0) return errno;
  struct stat old {};
  if (::stat(target.c_str(), &old) == 0 && ::fchmod(draft.number(), old.st_mode & 07777U) != 0) return errno;
  const int error = draft.write(bytes);
  return error != 0 ? error : draft.bringToDisk();
}

// The text in front of a line that is appended.
std::string leadOf(const FileHandle& file, off_t size, std::string_view header) {
  if (size == 0) return std::string(header);
  char last = '\n';
  return ::pread(file.number(), &last, 1, size - 1) == 1 && last != '\n' ? "\r\n" : "";
}

}  // namespace

// A file that was replaced by another of the same size within a clock tick has another number, or another time to the
// nanosecond.
PathState stateOf(const std::string& path) {
  struct stat state {};
  if (::stat(path.c_str(), &state) != 0) return {};
  if (!S_ISREG(state.st_mode)) return {.kind = S_ISDIR(state.st_mode) ? PathKind::Folder : PathKind::Other};
  PathState file{.kind = PathKind::File, .changedSeconds = state.st_mtim.tv_sec};
  for (const auto number :
       {static_cast<std::int64_t>(state.st_mtim.tv_sec), static_cast<std::int64_t>(state.st_mtim.tv_nsec),
        static_cast<std::int64_t>(state.st_size), static_cast<std::int64_t>(state.st_ino),
        static_cast<std::int64_t>(state.st_ctim.tv_sec), static_cast<std::int64_t>(state.st_ctim.tv_nsec)})
    file.stamp += std::to_string(number) + "/";
  return file;
}

std::optional<Bytes> readWhole(const std::string& path, std::size_t limit, std::atomic<std::size_t>& progress) {
  FileHandle file;
  if (kindOf(path) != PathKind::File || file.open(path, O_RDONLY) != 0) return std::nullopt;
  if (!S_ISREG(file.state().st_mode)) return std::nullopt;
  Bytes bytes;
  for (;;) {
    const std::size_t before = bytes.size();
    const std::size_t step = limit == 0 ? kReadStep : std::min(kReadStep, limit - before);
    if (step == 0) return bytes;
    bytes.resize(before + step);
    const auto count = ::read(file.number(), bytes.data() + before, step);
    if (count < 0 && errno != EINTR) return std::nullopt;
    bytes.resize(before + static_cast<std::size_t>(std::max<decltype(count)>(count, 0)));
    progress = bytes.size();
    if (count == 0) return bytes;
  }
}

FileResult replaceFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  const std::filesystem::path target = targetOf(path);
  const PathKind kind = kindOf(target);
  if (kind == PathKind::Folder) return failureOf(EISDIR);
  if (kind == PathKind::Other) return failureOf(ENXIO);
  if (kind == PathKind::File && ::access(target.c_str(), W_OK) != 0) return failureOf(errno);
  const std::string name = draftOf(target);
  FileHandle draft;
  if (const int error = draft.openLocked(name, O_RDWR | O_NOFOLLOW); error != 0) return failureOf(error);
  int error = writeDraft(draft, bytes, target);
  if (error == 0 && ::rename(name.c_str(), target.c_str()) != 0) error = errno;
  if (error == 0) return {};
  ::unlink(name.c_str());
  return failureOf(error);
}

FileResult appendToFile(const std::string& path, std::string_view line, std::string_view header) {
  const PathKind kind = kindOf(path);
  if (kind == PathKind::Folder) return failureOf(EISDIR);
  if (kind == PathKind::Other) return failureOf(ENXIO);
  FileHandle file;
  if (const int error = file.openLocked(path, O_RDWR | O_APPEND); error != 0) return failureOf(error);
  const off_t size = file.state().st_size;
  int error = file.write(bytesOf(leadOf(file, size, header) + std::string(line)));
  if (error == 0) error = file.bringToDisk();
  if (error == 0) return {};
  if (kind == PathKind::Absent && size == 0)
    ::unlink(path.c_str());
  else if (::ftruncate(file.number(), size) != 0)
    return {false, failureOf(error).error + "; a part of the line is left in the file"};
  return failureOf(error);
}

// To give 100 MB back to the disk takes the system 20 ms: a thread of its own holds the file for so long.
FileResult removeFile(const std::string& path) {
  auto file = std::make_unique<FileHandle>();
  const bool large =
      kindOf(path) == PathKind::File && file->open(path, O_RDONLY | O_NOFOLLOW) == 0 && file->state().st_size >= kLarge;
  if (!large) file->close();
  if (::unlink(path.c_str()) != 0) return failureOf(errno);
  try {
    if (large) std::thread([held = std::move(file)] {}).detach();
  } catch (const std::system_error&) {
    // It is given back here then.
  }
  return {};
}

FileResult makeFolders(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  return error ? failureOf(error.value()) : FileResult();
}

}  // namespace kvr::platform
