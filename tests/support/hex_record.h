// HEX files made by hand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::support {

// A HEX record with its check sum, without a line end.
inline std::string hexRecord(int address, const std::vector<std::uint8_t>& data, int type = 0) {
  std::vector<std::uint8_t> all{static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(address >> 8),
                                static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(type)};
  all.insert(all.end(), data.begin(), data.end());
  std::uint8_t sum = 0;
  std::string text = ":";
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto add = [&](std::uint8_t byte) { (text += digits[byte >> 4]) += digits[byte & 15]; };
  for (const auto byte : all) {
    sum = static_cast<std::uint8_t>(sum + byte);
    add(byte);
  }
  add(static_cast<std::uint8_t>(0x100 - sum));
  return text;
}
inline const std::string kEndRecord = ":00000001FF";

}  // namespace kvr::support
