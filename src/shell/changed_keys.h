// A view of the settings that writes only what this window has changed, so that two windows do not write each other's
// choices back.
#pragma once

#include <map>
#include <string>

#include "platform/settings_store.h"

namespace kvr::shell {

class ChangedKeys {
 public:
  explicit ChangedKeys(platform::SettingsStore& store) : store_(store) {}

  // The stored text, or the fallback when the key is absent or the store cannot be read.
  std::string read(const std::string& key, const std::string& fallback) const;

  // This is what the window shows for the key without having changed it.
  void hold(const std::string& key, const std::string& value) { held_[key] = value; }

  // Stores the value when it differs from what the window held, or when the store has no such key yet.
  void write(const std::string& key, const std::string& value);

  // Brings what was stored to the disk; does nothing when nothing was. What could not be written is tried again by the
  // next flush.
  [[nodiscard]] platform::FileResult flush();

 private:
  platform::SettingsStore& store_;
  std::map<std::string, std::string> held_;
  bool pending_ = false;
};

}  // namespace kvr::shell
