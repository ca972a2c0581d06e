#include "shell/changed_keys.h"

namespace kvr::shell {
namespace {

constexpr const char* kSection = "Settings";

}  // namespace

std::string ChangedKeys::read(const std::string& key, const std::string& fallback) const {
  return store_.getOr(kSection, key, fallback);
}

void ChangedKeys::write(const std::string& key, const std::string& value) {
  const auto held = held_.find(key);
  const bool unchanged = held != held_.end() && held->second == value;
  if (unchanged && store_.get(kSection, key).has_value()) return;
  held_[key] = value;
  store_.set(kSection, key, value);
  pending_ = true;
}

platform::FileResult ChangedKeys::flush() {
  if (!pending_) return {};
  const platform::FileResult saved = store_.flush();
  pending_ = !saved;
  return saved;
}

}  // namespace kvr::shell
