// Frames as the boot firmware sees them. On the wire: 46 B9, direction, length (two bytes), command, payload, sum, 16.
// The length counts from the direction byte through the end byte.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "sim/device.h"

namespace sim {

using Bytes = std::vector<std::uint8_t>;

struct HostFrame {
  Bytes wire;        // from 46 through 16
  Micros begun = 0;  // its first byte had arrived
  bool sumGood = false;
  bool endGood = false;
  bool damaged = false;  // a byte of it was tampered with on the way
  int command() const { return wire[5]; }
  int length() const { return wire[3] * 256 + wire[4]; }
  // Bytes between command and sum.
  std::span<const std::uint8_t> payload(bool wideSum) const;
};

enum class FrameCheck { sum8, sum16, crc };

// Puts frames together from single bytes; a silence longer than the gap drops what was begun.
class FrameReader {
 public:
  FrameReader(FrameCheck check, Micros gap) : check_(check), gap_(gap) {}
  void reset() { bytes_.clear(), damaged_ = false; }
  bool begun() const { return bytes_.size() > 2; }
  // The frame that this byte completes, if it does.
  const HostFrame* take(Micros at, const Heard& heard);

 private:
  void keepStart();
  void finish();

  FrameCheck check_;
  Micros gap_;
  Micros lastAt_ = 0;
  Micros begun_ = 0;
  bool damaged_ = false;
  Bytes bytes_;
  HostFrame frame_;
};

// A reply with its start pair; `payload` begins after the command byte.
Bytes buildReply(std::uint8_t command, std::span<const std::uint8_t> payload, bool wideSum);

// The same with the CRC of the off-line board.
Bytes buildCrcReply(std::uint8_t command, std::span<const std::uint8_t> payload);

constexpr int sumOf(std::span<const std::uint8_t> bytes) {
  int sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return sum;
}

constexpr int hexDigit(char digit) {
  return digit <= '9' ? digit - '0' : digit - 'A' + 10;
}

// The value of bytes, high byte first.
constexpr std::int64_t number(std::span<const std::uint8_t> bytes) {
  std::int64_t value = 0;
  for (const std::uint8_t byte : bytes) value = value * 256 + byte;
  return value;
}

// CRC-16 with the reflected polynomial A001, begun at FFFF; it travels low byte first.
std::uint16_t crc16(std::span<const std::uint8_t> bytes);

}  // namespace sim
