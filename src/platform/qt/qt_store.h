// The settings of the user at this machine: an INI file at the desktop's standard place.
//
// Several windows may share the file. Only keys that were set here are written; what others wrote meanwhile stays. A
// file that is no settings file reads as an empty one, and is put aside (".broken") by the first save, not before. A
// save that cannot be finished (a full disk, the end of the process) leaves the file as it was.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <map>
#include <memory>

#include "platform/settings_store.h"

namespace kvr::platform {

class QtStore : public SettingsStore {
 public:
  QtStore();  // the standard place; XDG_CONFIG_HOME moves it
  explicit QtStore(const std::string& path);
  std::optional<std::string> get(const std::string& section, const std::string& key) const override;
  void set(const std::string& section, const std::string& key, const std::string& value) override;
  bool flush() override;
  std::string path() const;
  // Takes in what others have written to the file since.
  void refresh();

 private:
  void reopen();
  QByteArray draft() const;
  std::string path_;
  std::unique_ptr<QSettings> settings_;  // what the file held; only read, so that it never writes by itself
  std::map<QString, QString> pending_;   // set and not yet known to be on the disk
  bool foreign_ = false;                 // the file was there and was no settings file
};

}  // namespace kvr::platform
