// Files as the program needs them: whole. Errors are values with a text for the user. What is no ordinary file (a
// device, a pipe) is never read or written, so no call waits for the other end of one. A path is any run of bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::platform {

using Bytes = std::vector<std::uint8_t>;

struct FileResult {
  bool ok = true;
  std::string error;  // such as "disk full"
  explicit operator bool() const { return ok; }
};

// A file that only grows, such as a log. Destroying it brings what was written to the disk, in two seconds at most.
class GrowingFile {
 public:
  virtual ~GrowingFile() = default;
  // Takes the bytes at once and never waits for the disk, where they are a second later. An error, of this or an
  // earlier write, ends the file: nothing more is written.
  [[nodiscard]] virtual FileResult write(std::span<const std::uint8_t> bytes) = 0;
  // Nothing more will come: what was written goes to the disk without anybody waiting for it, unless the file is
  // destroyed before it is there.
  virtual void finish() {}
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;
  // The whole file, at most `limit` bytes of it (0: no limit). Nothing: it cannot be read (absent, a folder, denied).
  virtual std::optional<Bytes> read(const std::string& path, std::size_t limit = 0) const = 0;
  // Replaces the file whole, or leaves the old one as it was: never half of either.
  [[nodiscard]] virtual FileResult replace(const std::string& path, std::span<const std::uint8_t> bytes) = 0;
  // Adds a line to the end of a text file and brings it to the disk: whole, or not at all. A new or empty file gets the
  // header first, and a last line without its end gets that first. `line` and `header` end with their line end.
  [[nodiscard]] virtual FileResult appendLine(const std::string& path, std::string_view line,
                                              std::string_view header) = 0;
  // A new file, or the end of one that is there. Nothing: it cannot be opened, and `why` tells the reason.
  virtual std::unique_ptr<GrowingFile> grow(const std::string& path, FileResult& why) = 0;
  [[nodiscard]] virtual FileResult remove(const std::string& path) = 0;
  virtual bool fileExists(const std::string& path) const = 0;
  virtual bool folderExists(const std::string& path) const = 0;
  [[nodiscard]] virtual FileResult makeFolder(const std::string& path) = 0;
  // The names of the ordinary files in a folder, in any order; none when there is no such folder.
  virtual std::vector<std::string> filesIn(const std::string& folder) const = 0;
  // A text that changes whenever the file's content may have changed (time of last change, size, identity); nothing
  // when the file is absent.
  virtual std::optional<std::string> stamp(const std::string& path) const = 0;
  // Local date and time of the file's last change, "yyyy-mm-dd hh:mm:ss"; empty when the file is absent.
  virtual std::string changedAt(const std::string& path) const = 0;
  // The path as every working directory reads it.
  virtual std::string absolute(const std::string& path) const = 0;
  // The folder for what the program keeps beside itself: its own when it can be written, else the user's documents.
  virtual std::string programFolder() const = 0;
  // The folder for what the program notes for later and the user may lose: $XDG_STATE_HOME/KVR-ISP.
  virtual std::string stateFolder() const = 0;
};

}  // namespace kvr::platform
