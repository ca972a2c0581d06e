#include "sim/json.h"

#include <cstdio>

namespace sim {

namespace {

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    if (static_cast<unsigned char>(c) >= 0x20) out += c;
  }
  return out + "\"";
}

std::string shortNumber(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.15g", value);
  return text;
}

}  // namespace

JsonObject& JsonObject::put(std::string_view key, std::string_view ready) {
  if (!body_.empty()) body_ += ",\n ";
  body_ += quoted(key) + ": ";
  body_ += ready;
  return *this;
}

JsonObject& JsonObject::text(std::string_view key, std::string_view value) {
  return put(key, quoted(value));
}

JsonObject& JsonObject::number(std::string_view key, double value) {
  return put(key, shortNumber(value));
}

JsonObject& JsonObject::flag(std::string_view key, bool value) {
  return put(key, value ? "true" : "false");
}

JsonObject& JsonObject::hex(std::string_view key, std::span<const std::uint8_t> bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) text.append({kDigits[byte >> 4], kDigits[byte & 15]});
  return put(key, "\"" + text + "\"");
}

JsonObject& JsonObject::list(std::string_view key, const std::vector<std::string>& ready) {
  std::string text = "[";
  for (std::size_t i = 0; i < ready.size(); ++i) text += (i ? ",\n  " : "") + ready[i];
  return put(key, text + "]");
}

JsonObject& JsonObject::notes(std::string_view key, const std::vector<Note>& notes) {
  std::vector<std::string> ready;
  for (const Note& note : notes) {
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.6f ", static_cast<double>(note.at) / kSecond);
    ready.push_back(quoted(seconds + note.text));
  }
  return list(key, ready);
}

}  // namespace sim
