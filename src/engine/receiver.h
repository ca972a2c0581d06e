// The receive state machine: bytes in, at most one whole frame in the buffer. A value without clock or port, so that a
// test can feed it any split of any bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kvr::engine {

// A whole good frame, from the direction byte on. What it does not carry reads 0, so that nothing of an older answer,
// which another chip may have sent, is ever taken for a part of this one.
struct Reply {
  std::array<std::uint8_t, 256> bytes{};
  std::uint8_t operator[](std::size_t index) const { return bytes[index]; }
  int length() const { return bytes[2]; }
  std::uint8_t command() const { return bytes[3]; }
};

struct Receiver {
  static constexpr int kCapacity = 2101;

  std::array<std::uint8_t, kCapacity> buffer{};  // from the direction byte on; [1], [2]: length; [3]: command or status
  int count = 0;
  bool frameOk = false;           // a whole frame with good end byte and sum lies in the buffer
  bool frameBad = false;          // a whole frame failed its sum
  bool armed = false;             // false: bytes are dropped
  bool requireStartPair = false;  // 46 B9 must come before 68
  bool boardCrcMode = false;      // CRC instead of a sum
  bool frame2 = false;            // two-byte sum

  int length() const { return buffer[2]; }  // of the last frame, once three bytes are in

  // Nothing received: what every sender starts from. Keeps the modes and `armed`; `frameBad` stays as it is.
  void clear();
  // All that waited at the port, in order.
  void take(std::span<const std::uint8_t> bytes);
  Reply reply() const;  // the frame, once `frameOk`
  // Whether it would hold a whole good frame after `take(bytes)`.
  bool completedBy(std::span<const std::uint8_t> bytes) const;
  // Part of a frame is in and its end is not.
  bool midFrame() const { return !frameOk && (count > 0 || seenStart1_); }

 private:
  std::size_t findStartPair(std::span<const std::uint8_t> bytes);  // how many bytes that took
  void judge();
  void drop();
  bool sumMatches() const;
  bool seenStart1_ = false;  // 46 was seen
  bool seenStart2_ = false;  // B9 was seen after it
};

}  // namespace kvr::engine
