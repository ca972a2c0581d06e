// Monitor frames as a firmware sends them, built by hand.
#pragma once

#include <cstdint>
#include <numeric>
#include <vector>

namespace kvr::monitor {

using Bytes = std::vector<std::uint8_t>;

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

// A5 5A and the frame. The registers are 0x11, 0x22, ... 0x99 in their order (PSW first, R0 last).
inline Bytes dump(int type, const Bytes& data, int address = 0) {
  const std::size_t length = data.size() + 17;
  const auto byte = [](std::size_t value) { return static_cast<std::uint8_t>(value); };
  const auto at = static_cast<std::size_t>(address);
  Bytes frame{0xAA, byte(length >> 8), byte(length), byte(static_cast<std::size_t>(type)), 0, byte(at >> 8), byte(at)};
  for (int i = 1; i <= 9; ++i) frame.push_back(static_cast<std::uint8_t>(0x11 * i));
  frame = frame + data;
  frame.push_back(byte(std::accumulate(frame.begin(), frame.end(), std::size_t{0})));
  return Bytes{0xA5, 0x5A} + frame;
}

inline Bytes counting(std::size_t size, int from = 0) {
  Bytes data(size);
  std::iota(data.begin(), data.end(), static_cast<std::uint8_t>(from));
  return data;
}

}  // namespace kvr::monitor
