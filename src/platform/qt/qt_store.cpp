#include "platform/qt/qt_store.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include "platform/qt/qt_files.h"

namespace kvr::platform {
namespace {

constexpr int kLockLimitMs = 1000;

QString keyOf(const std::string& section, const std::string& key) {
  return QString::fromStdString(section + "/" + key);
}

// Whether every key got its line, the last one to its end.
bool isWhole(const QByteArray& text, qsizetype keys) {
  qsizetype lines = 0;
  for (const QByteArray& line : text.split('\n')) lines += !line.isEmpty() && !line.startsWith('[') ? 1 : 0;
  return text.endsWith('\n') && lines == keys;
}

// QSettings takes a file of the same size and time for the one it has read already.
void makeNewer(const QString& name, const QDateTime& before) {
  QFile file(name);
  if (QFileInfo(name).lastModified() != before || !file.open(QIODevice::ReadWrite)) return;
  file.setFileTime(before.addMSecs(1), QFileDevice::FileModificationTime);
}

std::string standardPath() {
  const QSettings place(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("KVR-ISP"),
                        QStringLiteral("KVR-ISP"));
  return place.fileName().toStdString();
}

}  // namespace

QtStore::QtStore() : QtStore(standardPath()) {}

QtStore::QtStore(const std::string& path) : path_(path) {
  reopen();
  const QFileInfo file(QString::fromStdString(path_));
  foreign_ = file.exists() && file.size() > 0 && (settings_->status() != QSettings::NoError || !file.isReadable());
}

void QtStore::reopen() {
  settings_ = std::make_unique<QSettings>(QString::fromStdString(path_), QSettings::IniFormat);
  settings_->setFallbacksEnabled(false);
  settings_->allKeys();  // sections are read when first asked for; only then does the status count
}

std::optional<std::string> QtStore::get(const std::string& section, const std::string& key) const {
  const QString name = keyOf(section, key);
  if (const auto waiting = pending_.find(name); waiting != pending_.end()) return waiting->second.toStdString();
  const QVariant value = settings_->value(name);
  if (!value.isValid()) return std::nullopt;
  // A text with commas that was written by hand reads as a list.
  if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(QLatin1String(", ")).toStdString();
  return value.toString().toStdString();
}

void QtStore::set(const std::string& section, const std::string& key, const std::string& value) {
  const QString name = keyOf(section, key);
  const QString text = QString::fromStdString(value);
  if (settings_->contains(name) && settings_->value(name).toString() == text && !pending_.count(name)) return;
  pending_[name] = text;
}

// The file as it is to stand: what is in it now, with what was set here. QSettings knows the format, but it calls a
// file written that a full disk cut off; so it writes a draft, which is looked at. Empty: there is no whole one.
QByteArray QtStore::draft() const {
  const QString name = QString::fromStdString(path_) + QLatin1String(".draft");
  QFile::remove(name);
  QFile::remove(name + QLatin1String(".lock"));  // of a save that was killed; the file's own lock is held
  qsizetype keys = 0;
  {
    const QSettings held(QString::fromStdString(path_), QSettings::IniFormat);
    QSettings out(name, QSettings::IniFormat);
    out.clear();
    for (const QString& key : held.allKeys()) out.setValue(key, held.value(key));
    for (const auto& [key, value] : pending_) out.setValue(key, value);
    out.sync();
    keys = out.status() == QSettings::NoError ? out.allKeys().size() : -1;
  }
  QFile file(name);
  const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  file.remove();
  return isWhole(text, keys) ? text : QByteArray();
}

bool QtStore::flush() {
  if (pending_.empty()) return true;
  const QString file = QString::fromStdString(path_);
  QDir().mkpath(QFileInfo(file).path());
  QLockFile lock(file + QLatin1String(".lock"));
  lock.setStaleLockTime(kLockLimitMs);  // a save takes far less; one that was killed must not stop the next
  if (!lock.tryLock(2 * kLockLimitMs)) return false;
  if (foreign_) {
    QFile::remove(file + QLatin1String(".broken"));
    QFile::rename(file, file + QLatin1String(".broken"));
    foreign_ = false;
  }
  const QDateTime before = QFileInfo(file).lastModified();
  const QByteArray text = draft();
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.constData()), static_cast<std::size_t>(text.size()));
  if (text.isEmpty() || !QtFiles().replace(path_, bytes)) return false;
  makeNewer(file, before);
  pending_.clear();
  reopen();
  return true;
}

std::string QtStore::path() const {
  return path_;
}

void QtStore::refresh() {
  reopen();
}

}  // namespace kvr::platform
