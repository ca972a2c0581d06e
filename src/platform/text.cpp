#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale>
#include <sstream>

namespace kvr::platform {
namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::size_t digitsFrom(std::string_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
  return end;
}

// Of a number beyond what a double holds: whether it is too small, not too large. Its first digit that is not zero
// counts, and how far the exponent moves it.
bool isTiny(std::string_view number) {
  const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, exponentAt);
  const auto point = static_cast<double>(std::min(digits.find('.'), digits.size()));
  const auto first = static_cast<double>(std::min(digits.find_first_of("123456789"), digits.size()));
  const bool moved = exponentAt < number.size();
  return point - first + (moved ? valueOf(number.substr(exponentAt + 1)) : 0) < 0;
}

// The number at the head of a text.
struct Number {
  bool negative = false;
  std::string digits;   // without its sign; empty: there is none
  std::size_t end = 0;  // in the text
};

Number numberIn(std::string_view text) {
  Number number;
  std::size_t begin = 0;
  while (begin < text.size() && isBlank(text[begin])) ++begin;
  if (begin < text.size() && (text[begin] == '+' || text[begin] == '-')) number.negative = text[begin++] == '-';
  std::size_t end = digitsFrom(text, begin);
  std::size_t digits = end - begin;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = digitsFrom(text, end + 1);
    digits += fraction - end - 1;
    end = fraction;
  }
  if (digits == 0) return number;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (digitsFrom(text, exponent) > exponent) end = digitsFrom(text, exponent);
  }
  number.digits = text.substr(begin, end - begin);
  if (number.digits.front() == '.') number.digits.insert(0, "0");
  number.end = end;
  return number;
}

}  // namespace

std::string trim(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return std::string(text);
}

std::string upper(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return result;
}

bool isNumberText(std::string_view text) {
  const Number number = numberIn(text);
  return !number.digits.empty() && number.end == text.size();
}

// The largest one in place of a number that is larger.
double valueOf(std::string_view text) {
  const Number number = numberIn(text);
  if (number.digits.empty()) return 0;
  double value = 0;
  std::istringstream reader(number.digits);  // not every standard library has a from_chars of doubles
  reader.imbue(std::locale::classic());
  if (!(reader >> value)) value = isTiny(number.digits) ? 0 : std::numeric_limits<double>::max();
  return number.negative ? -value : value;
}

int wholeOf(std::string_view text) {
  return static_cast<int>(std::clamp(std::trunc(valueOf(text)), -2147483648.0, 2147483647.0));
}

std::string numberText(double value) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::general, 15).ptr;
  return upper({text.data(), end});
}

std::string fixedText(double value, int decimals) {
  std::array<char, 400> text{};  // the largest number has 309 digits in front of its point
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, decimals).ptr;
  return {text.data(), end};
}

std::uint32_t hexOf(std::string_view text) {
  std::uint32_t value = 0;
  for (const char c : text) {
    if (!std::isxdigit(static_cast<unsigned char>(c))) break;
    const int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    value = value << 4 | static_cast<std::uint32_t>(digit);
  }
  return value;
}

std::string hexText(std::uint32_t value, int digits) {
  char text[40];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

std::string padLeft(std::string_view text, int count, char fill) {
  const auto wanted = static_cast<std::size_t>(count);
  if (text.size() >= wanted) return std::string(text.substr(text.size() - wanted));
  return std::string(wanted - text.size(), fill) + std::string(text);
}

std::string minutesText(std::int64_t seconds) {
  char text[40];
  std::snprintf(text, sizeof text, "%02lld:%02lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60));
  return text;
}

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::int64_t roundEven(double value) {
  return static_cast<std::int64_t>(std::nearbyint(value));
}

std::int64_t floorOf(double value) {
  return static_cast<std::int64_t>(std::floor(value));
}

}  // namespace kvr::platform
