#include "comtool/hex_text.h"

namespace kvr::comtool {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr int kBlank = -1;
constexpr int kBad = -2;

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c == ' ' ? kBlank : kBad;
}

}  // namespace

HexText parseHexText(std::string_view text) {
  HexText result;
  std::size_t count = 0;
  int high = kBlank;
  const auto store = [&](int value) {
    if (++count <= HexText::kMaxBytes) result.bytes.push_back(static_cast<std::uint8_t>(value));
    high = kBlank;
  };
  for (const char c : text) {
    const int digit = digitOf(c);
    if (digit == kBad) return {HexText::Fault::BadCharacter, {}};
    if (digit == kBlank) {
      if (high != kBlank) store(high);
    } else if (high == kBlank) {
      high = digit;
    } else {
      store(high * 16 + digit);
    }
  }
  if (high != kBlank) store(high);
  if (count > HexText::kMaxBytes) return {HexText::Fault::TooLong, {}};
  return result;
}

std::string hexDump(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(bytes.size() * 3);
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
    text += ' ';
  }
  return text;
}

}  // namespace kvr::comtool
