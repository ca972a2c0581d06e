// The two things that a boot firmware tells of itself: its version and its stepping letter, each with an order.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace kvr::catalogue {

// One byte, two hexadecimal digits: 63 is 6.3, 5A is 5.A and lies between 5.9 and 6.0.
class FirmwareVersion {
 public:
  constexpr FirmwareVersion() = default;
  constexpr FirmwareVersion(unsigned whole, unsigned tenth) : byte_(static_cast<std::uint8_t>(whole * 16 + tenth)) {}
  static constexpr FirmwareVersion fromByte(std::uint8_t byte) { return {byte / 16u, byte % 16u}; }

  constexpr bool known() const { return byte_ != 0; }
  std::string text() const {  // "6.3"; empty for 0.0
    constexpr char kDigits[] = "0123456789ABCDEF";
    return known() ? std::string{kDigits[byte_ / 16], '.', kDigits[byte_ % 16]} : std::string();
  }
  constexpr auto operator<=>(const FirmwareVersion&) const = default;

 private:
  std::uint8_t byte_ = 0;
};

// The letter after the version. Letters rise with the generations: up to C the options are one byte, from I on they
// come in the long layout.
class Stepping {
 public:
  constexpr Stepping() = default;
  constexpr Stepping(char letter) : letter_(static_cast<unsigned char>(letter)) {}

  constexpr bool known() const { return letter_ != 0; }
  constexpr bool firstGeneration() const { return letter_ <= 'C'; }
  constexpr bool longOptions() const { return letter_ >= 'I'; }
  std::string text() const { return known() ? std::string(1, static_cast<char>(letter_)) : std::string(); }
  constexpr char letter() const { return static_cast<char>(letter_); }
  constexpr auto operator<=>(const Stepping&) const = default;

 private:
  unsigned char letter_ = 0;
};

}  // namespace kvr::catalogue
