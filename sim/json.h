// Just enough JSON to report with.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/journal.h"

namespace sim {

class JsonObject {
 public:
  JsonObject& text(std::string_view key, std::string_view value);
  JsonObject& number(std::string_view key, double value);
  JsonObject& flag(std::string_view key, bool value);
  JsonObject& hex(std::string_view key, std::span<const std::uint8_t> bytes);
  JsonObject& notes(std::string_view key, const std::vector<Note>& notes);  // "seconds text" each
  JsonObject& list(std::string_view key, const std::vector<std::string>& ready);
  std::string str() const { return "{" + body_ + "}"; }

 private:
  JsonObject& put(std::string_view key, std::string_view ready);
  std::string body_;
};

}  // namespace sim
