#include "platform/text_codec.h"

#include <cstdint>

namespace kvr::platform {
namespace {

struct Sequence {
  std::size_t length = 0;  // 0: no such lead byte
  std::uint32_t smallest = 0;
};

Sequence sequenceOf(unsigned char lead) {
  if (lead < 0x80) return {1, 0};
  if (lead >= 0xC2 && lead < 0xE0) return {2, 0x80};
  if (lead >= 0xE0 && lead < 0xF0) return {3, 0x800};
  if (lead >= 0xF0 && lead < 0xF5) return {4, 0x10000};
  return {};
}

// The length of the character at the head; 0 when it is broken, overlong, a surrogate or beyond the last one.
std::size_t characterAt(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes.front());
  const Sequence sequence = sequenceOf(lead);
  if (sequence.length <= 1) return sequence.length;
  if (bytes.size() < sequence.length) return 0;
  std::uint32_t value = lead & (0x7Fu >> sequence.length);
  for (std::size_t i = 1; i < sequence.length; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if ((byte & 0xC0) != 0x80) return 0;
    value = value << 6 | (byte & 0x3Fu);
  }
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  return value < sequence.smallest || surrogate || value > 0x10FFFF ? 0 : sequence.length;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = characterAt(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string utf8Of(std::string_view bytes, const TextCodec& codec) {
  return isUtf8(bytes) ? std::string(bytes) : codec.fromGbk(bytes);
}

}  // namespace kvr::platform
