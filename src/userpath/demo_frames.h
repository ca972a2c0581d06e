// The frames of the demo routine in a user's program:
//
//   5A A5, length (two bytes, counts all bytes), command, payload, sum (two bytes), 16
//
// All numbers are high byte first; the sum is that of all bytes before it. Replies have the same form.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kvr::userpath {

inline constexpr std::uint8_t kDemoConnect = 0xB0;
inline constexpr std::uint8_t kDemoFinish = 0xB1;
inline constexpr std::uint8_t kDemoErase = 0xB2;
inline constexpr std::uint8_t kDemoData = 0xB3;
inline constexpr std::uint8_t kDemoDataAgain = 0xB4;
inline constexpr std::uint8_t kDemoReadModel = 0xB5;

// A frame without payload. Data frames: `engine::buildDemoDataFrame`.
std::vector<std::uint8_t> buildDemoFrame(std::uint8_t command);

using DemoReply = std::vector<std::uint8_t>;  // a whole good one, from 5A on

// The receive state machine: bytes in, at most one whole reply in the buffer.
struct DemoReceiver {
  static constexpr std::size_t kCapacity = 2100;

  DemoReply buffer;      // from 5A on
  bool frameOk = false;  // a whole good reply lies in the buffer

  void clear();
  // All that waited at the port, in order. A wrong end byte empties the buffer, a wrong sum does not: the sender's time
  // limit ends the wait.
  void take(std::span<const std::uint8_t> bytes);
  int length() const;  // of the reply that is arriving; 0 while it is not known
  bool midFrame() const { return !frameOk && !buffer.empty(); }

 private:
  void judge();
};

}  // namespace kvr::userpath
