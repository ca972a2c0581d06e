// By Qt alone: names are what Qt makes of them, and two programs that save one file do not see each other.
#include "platform/qt/file_calls.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

namespace kvr::platform {
namespace {

constexpr std::size_t kReadStep = 1 << 20;

QString nameOf(const std::string& path) {
  return QString::fromStdString(path);
}

FileResult failureOf(const QFileDevice& file) {
  switch (file.error()) {
    case QFileDevice::ResourceError:
      return {false, "disk full"};
    case QFileDevice::OpenError:
    case QFileDevice::PermissionsError:
      return {false, "permission denied"};
    default:
      return {false, "the file cannot be written"};
  }
}

FileResult whyNotWritten(const std::string& path) {
  const PathKind kind = stateOf(path).kind;
  if (kind == PathKind::Folder) return {false, "it is a folder"};
  if (kind == PathKind::Other) return {false, "it is no ordinary file"};
  if (!QFileInfo(nameOf(path)).absoluteDir().exists()) return {false, "no such folder"};
  return {};
}

bool put(QFileDevice& file, std::string_view text) {
  const auto size = static_cast<qint64>(text.size());
  return file.write(text.data(), size) == size;
}

// The text in front of a line that is appended.
std::string_view leadOf(QFile& file, std::string_view header) {
  if (file.size() == 0) return header;
  char last = '\n';
  return file.seek(file.size() - 1) && file.getChar(&last) && last != '\n' ? "\r\n" : "";
}

}  // namespace

PathState stateOf(const std::string& path) {
  const QFileInfo info(nameOf(path));
  if (!info.exists()) return {};
  if (!info.isFile()) return {.kind = info.isDir() ? PathKind::Folder : PathKind::Other};
  const QDateTime changed = info.lastModified();
  const std::string stamp = std::to_string(changed.toMSecsSinceEpoch()) + "/" + std::to_string(info.size());
  return {.kind = PathKind::File, .stamp = stamp, .changedSeconds = changed.toSecsSinceEpoch()};
}

std::optional<Bytes> readWhole(const std::string& path, std::size_t limit, std::atomic<std::size_t>& progress) {
  QFile file(nameOf(path));
  if (stateOf(path).kind != PathKind::File || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  Bytes bytes;
  for (;;) {
    const std::size_t before = bytes.size();
    const std::size_t step = limit == 0 ? kReadStep : std::min(kReadStep, limit - before);
    bytes.resize(before + step);
    const auto count = file.read(reinterpret_cast<char*>(bytes.data() + before), static_cast<qint64>(step));
    if (count < 0) return std::nullopt;
    bytes.resize(before + static_cast<std::size_t>(count));
    progress = bytes.size();
    if (count == 0) return bytes;
  }
}

FileResult replaceFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  if (const FileResult free = whyNotWritten(path); !free) return free;
  QSaveFile file(nameOf(path));
  if (!file.open(QIODevice::WriteOnly)) return failureOf(file);
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return put(file, text) && file.commit() ? FileResult() : failureOf(file);
}

FileResult appendToFile(const std::string& path, std::string_view line, std::string_view header) {
  if (const FileResult free = whyNotWritten(path); !free) return free;
  QFile file(nameOf(path));
  if (!file.open(QIODevice::ReadWrite)) return failureOf(file);
  const qint64 size = file.size();
  const std::string text = std::string(leadOf(file, header)) + std::string(line);
  if (file.seek(size) && put(file, text) && file.flush()) return {};
  const FileResult failure = failureOf(file);
  if (size == 0 ? file.remove() : file.resize(size)) return failure;
  return {false, failure.error + "; a part of the line is left in the file"};
}

FileResult removeFile(const std::string& path) {
  QFile file(nameOf(path));
  return file.remove() ? FileResult() : failureOf(file);
}

FileResult makeFolders(const std::string& path) {
  return QDir().mkpath(nameOf(path)) ? FileResult() : FileResult{false, "permission denied"};
}

}  // namespace kvr::platform
