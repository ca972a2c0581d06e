#include "platform/qt/qt_store.h"

#include <QFile>
#include <QFileInfo>

namespace kvr::platform {
namespace {

QString keyOf(const std::string& section, const std::string& key) {
  return QString::fromStdString(section + "/" + key);
}

std::string standardPath() {
  const QSettings place(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("KVR-ISP"), QStringLiteral("KVR-ISP"));
  return place.fileName().toStdString();
}

}  // namespace

QtStore::QtStore() : QtStore(standardPath()) {}

QtStore::QtStore(const std::string& path) : path_(path) {
  reopen();
  const QFileInfo file(QString::fromStdString(path_));
  foreign_ = file.exists() && file.size() > 0 && (settings_->status() != QSettings::NoError || !file.isReadable());
}

// A status of QSettings never goes back to "no error" by itself, so a fresh object stands for a fresh attempt.
void QtStore::reopen() {
  settings_ = std::make_unique<QSettings>(QString::fromStdString(path_), QSettings::IniFormat);
  settings_->setFallbacksEnabled(false);
  settings_->setAtomicSyncRequired(true);
  settings_->allKeys();  // sections are read when first asked for; only then does the status count
  for (const auto& [key, value] : pending_) settings_->setValue(key, value);
}

std::optional<std::string> QtStore::get(const std::string& section, const std::string& key) const {
  const QVariant value = settings_->value(keyOf(section, key));
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
  settings_->setValue(name, text);
}

bool QtStore::flush() {
  if (pending_.empty()) return true;
  const QString file = QString::fromStdString(path_);
  if (foreign_) {
    QFile::remove(file + QLatin1String(".broken"));
    QFile::rename(file, file + QLatin1String(".broken"));
    foreign_ = false;
  }
  if (settings_->status() != QSettings::NoError) reopen();
  settings_->sync();
  if (settings_->status() != QSettings::NoError) return false;
  pending_.clear();
  return true;
}

std::string QtStore::path() const { return path_; }

void QtStore::refresh() {
  if (pending_.empty()) settings_->sync();
}

}  // namespace kvr::platform
