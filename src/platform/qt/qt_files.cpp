#include "platform/qt/qt_files.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <cerrno>
#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace kvr::platform {
namespace {

QString qtPath(const std::string& path) {
  return QString::fromStdString(path);
}

// Qt hands the system's words through; the usual ones get words that an operator knows.
FileResult failure(const QString& words) {
  static const std::pair<int, const char*> kKnown[] = {
      {ENOSPC, "disk full"},
      {EACCES, "permission denied"},
      {EPERM, "permission denied"},
      {EROFS, "the disk is write-protected"},
      {ENOENT, "no such folder"},
      {EISDIR, "it is a folder"},
      {EIO, "the disk does not answer"},
  };
  for (const auto& [code, text] : kKnown)
    if (words == qt_error_string(code)) return {false, text};
  return {false, words.isEmpty() ? std::string("the file cannot be written") : words.toStdString()};
}

bool writeAll(QFileDevice& file, std::span<const std::uint8_t> bytes) {
  const auto size = static_cast<qint64>(bytes.size());
  return file.write(reinterpret_cast<const char*>(bytes.data()), size) == size && file.flush();
}

}  // namespace

std::optional<Bytes> QtFiles::read(const std::string& path, std::size_t limit) const {
  QFile file(qtPath(path));
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  const QByteArray bytes = limit == 0 ? file.readAll() : file.read(static_cast<qint64>(limit));
  if (file.error() != QFileDevice::NoError) return std::nullopt;
  return Bytes(bytes.begin(), bytes.end());
}

FileResult QtFiles::replace(const std::string& path, std::span<const std::uint8_t> bytes) {
  QSaveFile file(qtPath(path));
  file.setDirectWriteFallback(false);
  if (QFileInfo(qtPath(path)).isDir()) return {false, "it is a folder"};
  if (!file.open(QIODevice::WriteOnly) || !writeAll(file, bytes) || !file.commit()) return failure(file.errorString());
  return {};
}

FileResult QtFiles::append(const std::string& path, std::span<const std::uint8_t> bytes) {
  QFile file(qtPath(path));
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || !writeAll(file, bytes))
    return failure(file.errorString());
#ifdef Q_OS_UNIX
  if (::fsync(file.handle()) != 0 && errno != EINVAL && errno != EROFS) return failure(qt_error_string(errno));
#endif
  return {};
}

bool QtFiles::fileExists(const std::string& path) const {
  return QFileInfo(qtPath(path)).isFile();
}

bool QtFiles::folderExists(const std::string& path) const {
  return QFileInfo(qtPath(path)).isDir();
}

FileResult QtFiles::makeFolder(const std::string& path) {
  if (QDir().mkpath(qtPath(path))) return {};
  return failure(qt_error_string(errno));
}

std::optional<std::string> QtFiles::stamp(const std::string& path) const {
  const QFileInfo info(qtPath(path));
  if (!info.isFile()) return std::nullopt;
  std::string stamp = std::to_string(info.lastModified().toMSecsSinceEpoch()) + "/" + std::to_string(info.size());
#ifdef Q_OS_UNIX
  // A file that was replaced by another of the same size within a clock tick has another number or time to the
  // nanosecond.
  struct stat state {};
  if (::stat(path.c_str(), &state) == 0)
    stamp += "/" + std::to_string(state.st_ino) + "/" + std::to_string(state.st_ctim.tv_sec) + "." +
             std::to_string(state.st_ctim.tv_nsec);
#endif
  return stamp;
}

std::string QtFiles::changedAt(const std::string& path) const {
  const QFileInfo info(qtPath(path));
  if (!info.isFile()) return {};
  return info.lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString();
}

std::string QtFiles::absolute(const std::string& path) const {
  return path.empty() ? path : QDir::cleanPath(QFileInfo(qtPath(path)).absoluteFilePath()).toStdString();
}

std::string QtFiles::programFolder() const {
  const QString own = QCoreApplication::applicationDirPath();
  if (QFileInfo(own).isWritable()) return own.toStdString();
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString();
}

}  // namespace kvr::platform
