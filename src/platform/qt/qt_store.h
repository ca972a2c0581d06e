// The settings of the user at this machine: an INI file at the desktop's standard place.
//
// Several windows may share the file. A save reads it anew, changes only the keys that were set here and replaces it
// whole, under a lock. A file that is no settings file, or is far too large for one, reads as an empty one and is put
// aside (".broken") by the first save, not before. A save that cannot be finished (a full disk, the end of the process)
// leaves the file as it was.
#pragma once

#include <QString>
#include <QVariant>
#include <map>
#include <memory>

#include "platform/settings_store.h"

namespace kvr::platform {

class QtStore : public SettingsStore {
 public:
  static constexpr qint64 kLargestFile = 1 << 20;  // a thousand times what the program itself writes

  QtStore();  // the standard place; XDG_CONFIG_HOME moves it
  explicit QtStore(const std::string& path);
  std::optional<std::string> get(const std::string& section, const std::string& key) const override;
  [[nodiscard]] std::optional<std::string> fresh(const std::string& section, const std::string& key) override;
  void set(const std::string& section, const std::string& key, const std::string& value) override;
  [[nodiscard]] FileResult flush() override;
  [[nodiscard]] std::unique_ptr<SettingsClaim> claim(const std::string& name) override;
  const std::string& path() const { return path_; }

 private:
  using Values = std::map<QString, QVariant>;
  struct Content {
    Values values;
    bool foreign = false;  // the file is there and is no settings file
  };
  Content readFile();
  FileResult write(const Values& values) const;
  QByteArray draft(const Values& values) const;
  std::string path_;
  std::string foreignStamp_;            // of the file that was found to be no settings file
  Values held_;                         // what the file held when it was last read
  std::map<QString, QString> pending_;  // set and not yet known to be on the disk
};

}  // namespace kvr::platform
