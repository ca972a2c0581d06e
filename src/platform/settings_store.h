// A small persistent store of texts by section and key, kept per user.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace kvr::platform {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // The stored text, or nothing when the key is absent or the store cannot be read.
  virtual std::optional<std::string> get(const std::string& section, const std::string& key) const = 0;
  // Stores one text. Other keys keep what they hold, also what another window has written meanwhile.
  virtual void set(const std::string& section, const std::string& key, const std::string& value) = 0;
  // Brings what was set to the disk, whole or not at all. False: it could not be written; the old store stands.
  virtual bool flush() = 0;

  std::string getOr(const std::string& section, const std::string& key, const std::string& fallback) const {
    return get(section, key).value_or(fallback);
  }
};

}  // namespace kvr::platform
