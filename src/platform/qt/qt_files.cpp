#include "platform/qt/qt_files.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>
#include <memory>
#include <utility>

#include "platform/qt/growing_file.h"

namespace kvr::platform {

std::optional<Bytes> QtFiles::read(const std::string& path, std::size_t limit) const {
  const auto bytes = std::make_shared<std::optional<Bytes>>();
  const bool done =
      calls_.run(path, [=](BoundedCalls::Progress& progress) { *bytes = readWhole(path, limit, progress); });
  return done ? std::move(*bytes) : std::nullopt;
}

PathState QtFiles::stateOf(const std::string& path) const {
  const auto answer = std::make_shared<PathState>();
  const bool done = calls_.run(path, [=](BoundedCalls::Progress&) { *answer = platform::stateOf(path); });
  return done ? *answer : PathState();
}

FileResult QtFiles::replace(const std::string& path, std::span<const std::uint8_t> bytes) {
  return replaceFile(path, bytes);
}

FileResult QtFiles::appendLine(const std::string& path, std::string_view line, std::string_view header) {
  return appendToFile(path, line, header);
}

std::unique_ptr<GrowingFile> QtFiles::grow(const std::string& path, FileResult& why) {
  return growFile(path, why);
}

FileResult QtFiles::remove(const std::string& path) {
  return removeFile(path);
}

FileResult QtFiles::makeFolder(const std::string& path) {
  return makeFolders(path);
}

bool QtFiles::fileExists(const std::string& path) const {
  return stateOf(path).kind == PathKind::File;
}

bool QtFiles::folderExists(const std::string& path) const {
  return stateOf(path).kind == PathKind::Folder;
}

std::optional<std::string> QtFiles::stamp(const std::string& path) const {
  const PathState state = stateOf(path);
  return state.kind == PathKind::File ? std::optional(state.stamp) : std::nullopt;
}

std::string QtFiles::changedAt(const std::string& path) const {
  const PathState state = stateOf(path);
  if (state.kind != PathKind::File) return {};
  const QDateTime time = QDateTime::fromSecsSinceEpoch(state.changedSeconds);
  return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString();
}

std::vector<std::string> QtFiles::filesIn(const std::string& folder) const {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
    if (std::error_code unknown; at->is_regular_file(unknown)) names.push_back(at->path().filename().string());
  return names;
}

std::string QtFiles::absolute(const std::string& path) const {
  if (path.empty()) return path;
  std::error_code error;
  const auto whole = std::filesystem::absolute(path, error);
  return error ? path : whole.string();
}

std::string QtFiles::stateFolder() const {
  const QByteArray given = qgetenv("XDG_STATE_HOME");  // one that is not absolute does not count
  const QByteArray base = given.startsWith('/') ? given : qgetenv("HOME") + "/.local/state";
  return base.toStdString() + "/KVR-ISP";
}

std::string QtFiles::programFolder() const {
  const QString own = QCoreApplication::applicationDirPath();
  if (QFileInfo(own).isWritable()) return own.toStdString();
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString();
}

}  // namespace kvr::platform
