#include "userpath/demo_frames.h"

#include <algorithm>
#include <numeric>

namespace kvr::userpath {
namespace {

constexpr std::uint8_t kStart1 = 0x5A, kStart2 = 0xA5, kEnd = 0x16;
constexpr std::size_t kShortFrame = 8;
constexpr std::size_t kShortestReply = 7;  // start pair, length, sum, end
constexpr std::size_t kTail = 3;           // sum, end
constexpr std::size_t kLengthKnown = 4;    // bytes in front of the command

unsigned sumOf(std::span<const std::uint8_t> bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0u) & 0xFFFF;
}

}  // namespace

std::vector<std::uint8_t> buildDemoFrame(std::uint8_t command) {
  std::vector<std::uint8_t> frame{kStart1, kStart2, 0, static_cast<std::uint8_t>(kShortFrame), command};
  const unsigned sum = sumOf(frame);
  frame.insert(frame.end(), {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum), kEnd});
  return frame;
}

void DemoReceiver::clear() {
  buffer.clear();
  frameOk = false;
}

int DemoReceiver::length() const {
  return buffer.size() < 4 ? 0 : buffer[2] << 8 | buffer[3];
}

void DemoReceiver::take(std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    if (frameOk || buffer.size() >= kCapacity) return;
    if (buffer.empty()) {
      if (byte == kStart1) buffer.push_back(byte);
    } else if (buffer.size() == 1 && byte != kStart2) {
      if (byte != kStart1) buffer.clear();  // a second 5A may be the first one of a reply
    } else {
      buffer.push_back(byte);
      judge();
    }
  }
}

void DemoReceiver::judge() {
  if (buffer.size() < kLengthKnown) return;
  const auto whole = static_cast<std::size_t>(length());
  if (whole == 0 || buffer.size() < whole) return;  // a length of 0 never comes whole: the time limit ends the wait
  if (whole < kShortestReply || buffer.back() != kEnd) return clear();
  const std::span<const std::uint8_t> body = std::span(buffer).first(whole - kTail);
  frameOk = sumOf(body) == (unsigned{buffer[whole - 3]} << 8 | buffer[whole - 2]);
}

}  // namespace kvr::userpath
