#include "comtool/text_cells.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kvr::comtool {

namespace {

constexpr Utf8Char kBadByte{0xFFFD, 1};

struct CharRange {
  char32_t first;
  char32_t last;
};
constexpr std::array kCombining{CharRange{0x0300, 0x036F}, CharRange{0x0483, 0x0489}, CharRange{0x0591, 0x05BD},
                                CharRange{0x064B, 0x065F}, CharRange{0x200B, 0x200F}, CharRange{0x20D0, 0x20F0},
                                CharRange{0xFE00, 0xFE0F}, CharRange{0xFE20, 0xFE2F}};
constexpr std::array kWide{CharRange{0x1100, 0x115F},   CharRange{0x2E80, 0x303E},  CharRange{0x3041, 0xA4CF},
                           CharRange{0xAC00, 0xD7A3},   CharRange{0xF900, 0xFAFF},  CharRange{0xFE30, 0xFE6F},
                           CharRange{0xFF00, 0xFF60},   CharRange{0xFFE0, 0xFFE6},  CharRange{0x1F300, 0x1F64F},
                           CharRange{0x1F900, 0x1F9FF}, CharRange{0x20000, 0x3FFFD}};

template <std::size_t N>
bool within(const std::array<CharRange, N>& ranges, char32_t value) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [&](const CharRange& r) { return value >= r.first && value <= r.last; });
}

}  // namespace

Utf8Char firstChar(std::string_view text) {
  if (text.empty()) return {};
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return kBadByte;
  char32_t value = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return kBadByte;
    value = value << 6 | (byte(i) & 0x3FU);
  }
  const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  if (overlong || surrogate || value > 0x10FFFF) return kBadByte;
  return {value, length};
}

std::size_t countChars(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<std::uint8_t>(c) & 0xC0) != 0x80; }));
}

std::string_view headChars(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; count > 0 && at < text.size(); --count) at += firstChar(text.substr(at)).bytes;
  return text.substr(0, at);
}

std::string_view tailChars(std::string_view text, std::size_t count) {
  std::size_t at = text.size();
  while (count > 0 && at > 0)
    if ((static_cast<std::uint8_t>(text[--at]) & 0xC0) != 0x80) --count;
  return text.substr(at);
}

std::string utf8Of(char32_t value) {
  const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((value >> shift) & 0x3F)); };
  if (value < 0x80) return {static_cast<char>(value)};
  if (value < 0x800) return {static_cast<char>(0xC0 | value >> 6), tail(0)};
  if (value < 0x10000) return {static_cast<char>(0xE0 | value >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | value >> 18), tail(12), tail(6), tail(0)};
}

int columnsOf(char32_t value, int column) {
  if (value == '\t') return 8 - column % 8;
  if (value < 0x300) return 1;
  if (within(kCombining, value)) return 0;
  return value >= 0x1100 && within(kWide, value) ? 2 : 1;
}

int columnAt(std::string_view row, std::size_t offset) {
  int column = 0;
  for (std::size_t at = 0; at < std::min(offset, row.size());) {
    const Utf8Char next = firstChar(row.substr(at));
    column += columnsOf(next.value, column);
    at += next.bytes;
  }
  return column;
}

std::size_t offsetAt(std::string_view row, int column) {
  std::size_t at = 0;
  for (int passed = 0; at < row.size();) {
    const Utf8Char next = firstChar(row.substr(at));
    passed += columnsOf(next.value, passed);
    if (passed > column) break;
    at += next.bytes;
  }
  return at;
}

char32_t shownAs(char32_t value) {
  if (value == '\t') return ' ';
  if (value < 0x20) return 0x2400 + value;
  if (value == 0x7F) return 0x2421;
  return value >= 0x80 && value < 0xA0 ? 0x25AF : value;
}

}  // namespace kvr::comtool
