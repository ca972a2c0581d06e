#include "platform/qt/qt_store.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QStorageInfo>

#include "platform/qt/qt_files.h"

namespace kvr::platform {
namespace {

constexpr int kLockLimitMs = 1000;

QString keyOf(const std::string& section, const std::string& key) {
  return QString::fromStdString(section + "/" + key);
}

std::string textOf(const QVariant& value) {
  // A text with commas that was written by hand reads as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(QLatin1String(", ")).toStdString();
  return value.toString().toStdString();
}

std::optional<std::string> lookUp(const std::map<QString, QVariant>& values, const QString& name) {
  const auto found = values.find(name);
  return found == values.end() ? std::nullopt : std::optional(textOf(found->second));
}

// Whether every key got its line, the last one to its end.
bool isWhole(const QByteArray& text, std::size_t keys) {
  std::size_t lines = 0;
  for (const QByteArray& line : text.split('\n')) lines += !line.isEmpty() && !line.startsWith('[') ? 1U : 0U;
  return text.endsWith('\n') && lines == keys;
}

// QSettings takes a file of the same size and time for the one it has read already, so the time only goes forward.
void makeNewer(const QString& name, const QDateTime& before) {
  QFile file(name);
  if (QFileInfo(name).lastModified() > before || !file.open(QIODevice::ReadWrite)) return;
  file.setFileTime(before.addMSecs(1), QFileDevice::FileModificationTime);
}

// Why nothing can be written in a folder, as far as the system tells it beforehand.
FileResult whyNot(const QString& folder) {
  if (!QFileInfo(folder).isDir()) return {false, "no such folder"};
  const QStorageInfo disk(folder);
  if (disk.isReadOnly()) return {false, "the disk is write-protected"};
  if (!QFileInfo(folder).isWritable()) return {false, "permission denied"};
  if (disk.bytesAvailable() < 64 * 1024) return {false, "disk full"};
  return {false, "the settings file cannot be written"};
}

std::string standardPath() {
  const QSettings place(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("KVR-ISP"),
                        QStringLiteral("KVR-ISP"));
  return place.fileName().toStdString();
}

// A claim by a lock file beside the settings. The system tells whether its process still runs, so one that was killed
// does not keep it.
class FileClaim : public SettingsClaim {
 public:
  explicit FileClaim(const QString& file) : lock_(file) { lock_.setStaleLockTime(0); }
  bool take() { return lock_.tryLock(0); }

 private:
  QLockFile lock_;
};

}  // namespace

QtStore::QtStore() : QtStore(standardPath()) {}

QtStore::QtStore(const std::string& path) : path_(path), held_(readFile().values) {}

// A new QSettings object looks whether the file has changed since another one read it. When it has not, it takes over
// what that one read, but not whether that made sense.
QtStore::Content QtStore::readFile() {
  const QFileInfo file(QString::fromStdString(path_));
  if (!file.exists() || file.size() == 0) return {};
  if (!file.isFile() || !file.isReadable() || file.size() > kLargestFile) return {{}, true};
  const std::string stamp = QtFiles().stamp(path_).value_or("");
  if (stamp == foreignStamp_) return {{}, true};
  Content content;
  QSettings settings(file.filePath(), QSettings::IniFormat);
  settings.setFallbacksEnabled(false);
  for (const QString& key : settings.allKeys())
    if (!key.isEmpty()) content.values[key] = settings.value(key);
  content.foreign = settings.status() != QSettings::NoError;  // known only now: sections are read when asked for
  if (!content.foreign) return content;
  foreignStamp_ = stamp;
  return {{}, true};
}

std::optional<std::string> QtStore::get(const std::string& section, const std::string& key) const {
  const QString name = keyOf(section, key);
  if (const auto waiting = pending_.find(name); waiting != pending_.end()) return waiting->second.toStdString();
  return lookUp(held_, name);
}

std::optional<std::string> QtStore::fresh(const std::string& section, const std::string& key) {
  held_ = readFile().values;
  return lookUp(held_, keyOf(section, key));
}

void QtStore::set(const std::string& section, const std::string& key, const std::string& value) {
  pending_[keyOf(section, key)] = QString::fromStdString(value);
}

// QSettings knows the format, but it calls a file written that a full disk cut off; so it writes a draft, which is
// looked at. Empty: there is no whole one.
QByteArray QtStore::draft(const Values& values) const {
  const QString name = QString::fromStdString(path_) + QLatin1String(".draft");
  QFile::remove(name);
  QFile::remove(name + QLatin1String(".lock"));  // of a save that was killed; the file's own lock is held
  bool written = false;
  {
    QSettings out(name, QSettings::IniFormat);
    out.clear();
    for (const auto& [key, value] : values) out.setValue(key, value);
    out.sync();
    written = out.status() == QSettings::NoError;
  }
  QFile file(name);
  const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  file.remove();
  return written && isWhole(text, values.size()) ? text : QByteArray();
}

FileResult QtStore::write(const Values& values) const {
  const QString file = QString::fromStdString(path_);
  const QDateTime before = QFileInfo(file).lastModified();
  const QByteArray text = draft(values);
  if (text.isEmpty()) return whyNot(QFileInfo(file).path());
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.constData()), static_cast<std::size_t>(text.size()));
  const FileResult written = QtFiles().replace(path_, bytes);
  if (written && before.isValid()) makeNewer(file, before);
  return written;
}

FileResult QtStore::flush() {
  if (pending_.empty()) return {};
  const QString file = QString::fromStdString(path_);
  const QString folder = QFileInfo(file).path();
  if (!QDir().mkpath(folder)) return whyNot(folder);
  QLockFile lock(file + QLatin1String(".lock"));
  lock.setStaleLockTime(kLockLimitMs);  // a save takes far less; one that was killed must not stop the next
  if (!lock.tryLock(2 * kLockLimitMs)) {
    const bool held = lock.error() == QLockFile::LockFailedError;
    return held ? FileResult{false, "another program holds the settings file"} : whyNot(folder);
  }
  Content now = readFile();
  if (now.foreign) {
    QFile::remove(file + QLatin1String(".broken"));
    QFile::rename(file, file + QLatin1String(".broken"));
  }
  bool changed = now.foreign;
  for (const auto& [key, value] : pending_) {
    changed = changed || lookUp(now.values, key) != value.toStdString();
    now.values[key] = value;
  }
  if (changed) {
    const FileResult written = write(now.values);
    if (!written) return written;
  }
  pending_.clear();
  held_ = std::move(now.values);
  return {};
}

std::unique_ptr<SettingsClaim> QtStore::claim(const std::string& name) {
  const QString file = QString::fromStdString(path_ + "." + name + ".claim");
  QDir().mkpath(QFileInfo(file).path());
  auto claim = std::make_unique<FileClaim>(file);
  if (!claim->take()) return nullptr;
  return claim;
}

}  // namespace kvr::platform
