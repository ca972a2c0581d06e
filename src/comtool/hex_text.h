// Hexadecimal text, as people type it, to bytes and back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::comtool {

struct HexText {
  static constexpr std::size_t kMaxBytes = 4097;
  enum class Fault {
    None,
    BadCharacter,  // something other than digits, letters A to F in either case, and blanks
    TooLong,       // more than kMaxBytes
  };
  Fault fault = Fault::None;
  std::vector<std::uint8_t> bytes;  // empty when there is a fault
  bool operator==(const HexText&) const = default;
};

// Reads pairs of digits; blanks are free, and a digit before a blank or at the end is a byte by itself. So "12 34 CD
// FF", "1234CDFF" and "1 2 3" are all good, and the last one gives 1, 2, 3. Blanks alone give no bytes.
HexText parseHexText(std::string_view text);

// Two upper-case digits and a blank for each byte.
std::string hexDump(std::span<const std::uint8_t> bytes);

}  // namespace kvr::comtool
