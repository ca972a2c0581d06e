#include "comtool/text_decoder.h"

#include <string_view>
#include <utility>

#include "comtool/text_cells.h"

namespace kvr::comtool {

using platform::Encoding;

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

// Most of what comes needs no look at single characters.
std::size_t plainHead(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && static_cast<signed char>(text[count]) >= 0) ++count;
  return count;
}

// The whole characters at the head; the bytes of one that has only begun stay.
std::string decodeUtf8(std::string_view& rest) {
  std::string text;
  text.reserve(rest.size());
  while (!rest.empty()) {
    const std::size_t plain = plainHead(rest);
    text += rest.substr(0, plain);
    rest.remove_prefix(plain);
    if (rest.empty()) break;
    const Utf8Char next = firstChar(rest);
    const bool bad = next.value == 0xFFFD && next.bytes == 1;
    if (bad && rest.size() < 4 && beginsCharacter(rest)) break;
    text += bad ? kReplacement : rest.substr(0, next.bytes);
    rest.remove_prefix(next.bytes);
  }
  return text;
}

}  // namespace

std::string TextDecoder::decode(std::span<const std::uint8_t> bytes, platform::Encoding encoding) {
  std::string all = std::move(held_);
  held_.clear();
  all.append(bytes.begin(), bytes.end());
  std::string_view rest = all;
  const bool utf8 = encoding == Encoding::Utf8 || (encoding == Encoding::System && codec_.systemIsUtf8());
  std::string text = utf8 ? decodeUtf8(rest) : codec_.decode(rest, encoding);
  held_ = rest;
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
