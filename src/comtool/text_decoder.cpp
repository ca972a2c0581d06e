#include "comtool/text_decoder.h"

#include <string_view>
#include <utility>

#include "comtool/text_cells.h"

namespace kvr::comtool {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// Whether some further bytes would make a character of these (at most three).
bool beginsCharacter(std::string_view bytes) {
  const auto lead = static_cast<std::uint8_t>(bytes[0]);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  if (bytes.size() >= length) return false;
  for (const char filler : {'\x80', '\xBF'}) {
    std::string whole(bytes);
    whole.resize(length, filler);
    if (firstChar(whole).bytes == length) return true;
  }
  return false;
}

}  // namespace

std::string TextDecoder::decode(std::span<const std::uint8_t> bytes) {
  std::string all = std::move(held_);
  held_.clear();
  all.append(bytes.begin(), bytes.end());
  std::string text;
  text.reserve(all.size());
  std::string_view rest = all;
  while (!rest.empty()) {
    const Utf8Char next = firstChar(rest);
    const bool bad = next.value == 0xFFFD && next.bytes == 1;
    if (bad && rest.size() < 4 && beginsCharacter(rest)) {
      held_ = rest;
      break;
    }
    text += bad ? kReplacement : rest.substr(0, next.bytes);
    rest.remove_prefix(next.bytes);
  }
  return text;
}

std::string TextDecoder::finish() {
  std::string text;
  for (std::size_t i = 0; i < held_.size(); ++i) text += kReplacement;
  held_.clear();
  return text;
}

std::string TextDecoder::takeHeld() {
  return std::exchange(held_, {});
}

}  // namespace kvr::comtool
