// Without the C library's tables: UTF-8 and Latin-1 alone. The system's own encoding is taken for UTF-8, and of GBK
// only the ASCII characters are known.
#include <algorithm>

#include "platform/qt/iconv_codec.h"

namespace kvr::platform {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";
constexpr std::size_t kLongest = 4;  // bytes of a character

// Bytes of the character in front; 0: they are none.
std::size_t characterBytes(std::string_view bytes) {
  for (std::size_t count = 1; count <= std::min(kLongest, bytes.size()); ++count)
    if (isUtf8(bytes.substr(0, count))) return count;
  return 0;
}

std::string latin1(char c) {
  const auto code = static_cast<unsigned char>(c);
  if (code < 0x80) return {c};
  return {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
}

// A character has begun, and its end is missing.
bool isUnfinished(std::string_view bytes) {
  const auto head = static_cast<unsigned char>(bytes[0]);
  const std::size_t whole = head >= 0xF0 ? 4 : head >= 0xE0 ? 3 : head >= 0xC0 ? 2 : 1;
  const auto follows = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  return bytes.size() < whole && std::all_of(bytes.begin() + 1, bytes.end(), follows);
}

}  // namespace

std::string IconvCodec::charsetOf(Encoding encoding) const {
  return encoding == Encoding::Latin1 ? "ISO-8859-1" : "UTF-8";
}

bool IconvCodec::systemIsUtf8() const {
  return true;
}

std::string IconvCodec::decode(std::string_view& bytes, Encoding encoding) const {
  std::string text;
  while (!bytes.empty()) {
    const bool oneByte = encoding == Encoding::Latin1 || encoding == Encoding::Gbk;
    const std::size_t count = oneByte ? 1 : characterBytes(bytes);
    if (count == 0 && isUnfinished(bytes)) break;
    const bool known = encoding == Encoding::Latin1 || (count > 0 && isUtf8(bytes.substr(0, count)));
    if (!known)
      text += kReplacement;
    else
      text += oneByte ? latin1(bytes[0]) : std::string(bytes.substr(0, count));
    bytes.remove_prefix(std::max<std::size_t>(count, 1));
  }
  return text;
}

std::string IconvCodec::encode(std::string_view text, Encoding encoding) const {
  if (encoding == Encoding::Utf8 || encoding == Encoding::System) return std::string(text);
  std::string bytes;
  while (!text.empty()) {
    const std::size_t count = std::max<std::size_t>(characterBytes(text), 1);
    const auto head = static_cast<unsigned char>(text[0]);
    if (count == 1 && head < 0x80)
      bytes += text[0];
    else if (encoding == Encoding::Latin1 && count == 2 && head < 0xC4)
      bytes += static_cast<char>((head & 0x03) << 6 | (static_cast<unsigned char>(text[1]) & 0x3F));
    else
      bytes += '?';
    text.remove_prefix(count);
  }
  return bytes;
}

std::string IconvCodec::fromGbk(std::string_view bytes) const {
  return decode(bytes, Encoding::Gbk);
}

}  // namespace kvr::platform
