// Files by the system's own calls: they take names of any bytes, tell after every call what went wrong, and never wait
// for the other end of a pipe.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <span>
#include <string>

#include "platform/qt/file_calls.h"

namespace kvr::platform {

// The failure as an operator would put it; never the system's own message.
FileResult failureOf(int error);

PathKind kindOf(const std::string& path);

// An open file; closed, and its lock given back, with its holder.
class FileHandle {
 public:
  // 0: open; else the error.
  int open(const std::string& path, int flags);
  // Opens a file for writing, makes it when it is absent, and keeps other programs' saves out; waits for them a second
  // at most. The file is then the one that has the name now.
  int openLocked(const std::string& path, int flags);
  FileHandle() = default;
  ~FileHandle() { close(); }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  void close();
  int number() const { return number_; }
  struct stat state() const;
  // 0: everything is written; else the error that stopped it, also when a part was.
  int write(std::span<const std::uint8_t> bytes) const;
  int bringToDisk() const;

 private:
  int lock() const;
  int number_ = -1;
};

}  // namespace kvr::platform
