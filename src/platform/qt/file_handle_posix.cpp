#include "platform/qt/file_handle_posix.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QThread>
#include <cerrno>
#include <utility>

namespace kvr::platform {
namespace {

constexpr int kLockTries = 100;  // 10 ms each

bool sameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

FileResult failureOf(int error) {
  static const std::pair<int, const char*> kKnown[] = {
      {ENOSPC, "disk full"},
      {EDQUOT, "disk full"},
      {EFBIG, "the file is too large for the disk"},
      {EACCES, "permission denied"},
      {EPERM, "permission denied"},
      {EROFS, "the disk is write-protected"},
      {ENOENT, "no such folder"},
      {ENOTDIR, "no such folder"},
      {EISDIR, "it is a folder"},
      {ENXIO, "it is no ordinary file"},
      {EINVAL, "the disk takes no such name"},
      {ENAMETOOLONG, "the name is too long"},
      {ELOOP, "the link leads nowhere"},
      {EIO, "the disk does not answer"},
      {EWOULDBLOCK, "another program is writing it"},
  };
  for (const auto& [code, text] : kKnown)
    if (error == code) return {false, text};
  return {false, "the file cannot be written"};
}

PathKind kindOf(const std::string& path) {
  struct stat state {};
  if (::stat(path.c_str(), &state) != 0) return PathKind::Absent;
  if (S_ISREG(state.st_mode)) return PathKind::File;
  return S_ISDIR(state.st_mode) ? PathKind::Folder : PathKind::Other;
}

int FileHandle::open(const std::string& path, int flags) {
  close();
  number_ = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
  return number_ < 0 ? errno : 0;
}

void FileHandle::close() {
  if (number_ >= 0) ::close(number_);
  number_ = -1;
}

struct stat FileHandle::state() const {
  struct stat state {};
  ::fstat(number_, &state);
  return state;
}

// A disk without locks is written without one.
int FileHandle::lock() const {
  for (int i = 0; i < kLockTries; ++i) {
    if (::flock(number_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return 0;
    QThread::msleep(10);
  }
  return EWOULDBLOCK;
}

int FileHandle::openLocked(const std::string& path, int flags) {
  for (int i = 0; i < kLockTries; ++i) {
    if (const int error = open(path, flags | O_CREAT); error != 0) return error;
    if (const int error = lock(); error != 0) return error;
    struct stat named {};
    if (::stat(path.c_str(), &named) == 0 && sameFile(named, state())) return 0;
  }
  return EWOULDBLOCK;
}

int FileHandle::write(std::span<const std::uint8_t> bytes) const {
  while (!bytes.empty()) {
    const auto count = ::write(number_, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return 0;
}

int FileHandle::bringToDisk() const {
  return ::fsync(number_) == 0 || errno == EINVAL || errno == EROFS ? 0 : errno;
}

}  // namespace kvr::platform
