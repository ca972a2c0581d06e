// A small persistent store of texts by section and key, kept per user. Several windows, each with a store of its own,
// may share the file.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/file_system.h"

namespace kvr::platform {

// Held for as long as a window counts with what it has claimed; letting it go gives it back.
class SettingsClaim {
 public:
  SettingsClaim() = default;
  virtual ~SettingsClaim() = default;
  SettingsClaim(const SettingsClaim&) = delete;
  SettingsClaim& operator=(const SettingsClaim&) = delete;
};

class SettingsStore {
 public:
  SettingsStore() = default;
  virtual ~SettingsStore() = default;
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;

  // The text that this window knows: set here, or in the file when the window last looked. Nothing when the key is
  // absent or the store cannot be read.
  virtual std::optional<std::string> get(const std::string& section, const std::string& key) const = 0;
  // The text in the file now, whatever this window has set or seen; `get` knows it from then on.
  [[nodiscard]] virtual std::optional<std::string> fresh(const std::string& section, const std::string& key) = 0;
  // Stores one text, to be written by the next flush even when the file seems to hold it already: another window may
  // have changed it meanwhile.
  virtual void set(const std::string& section, const std::string& key, const std::string& value) = 0;
  // Writes what was set here into the file as it is now, whole or not at all; other keys keep what they hold there. An
  // error tells why; the old file stays, and the next flush tries again.
  [[nodiscard]] virtual FileResult flush() = 0;
  // Claims a name, such as that of a counter, for this window. Nothing: another window has it, or the place of the
  // settings cannot be written (then no flush works either).
  [[nodiscard]] virtual std::unique_ptr<SettingsClaim> claim(const std::string& name) = 0;

  std::string getOr(const std::string& section, const std::string& key, const std::string& fallback) const {
    return get(section, key).value_or(fallback);
  }
};

}  // namespace kvr::platform
