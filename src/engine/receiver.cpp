#include "engine/receiver.h"

#include <algorithm>
#include <numeric>

#include "engine/board_crc.h"

namespace kvr::engine {
namespace {

constexpr std::uint8_t kStart1 = 0x46, kStart2 = 0xB9, kFromTarget = 0x68, kEnd = 0x16;
constexpr int kShortestFrame = 6;  // direction, length, command, sum, end

}  // namespace

void Receiver::clear() {
  count = 0;
  frameOk = false;
  seenStart1_ = seenStart2_ = false;
}

void Receiver::drop() {
  buffer[0] = 0;
  count = 0;
  frameOk = false;
  seenStart1_ = seenStart2_ = false;
}

// A 46 after a 46 is a new first byte; any other byte than B9 starts the search again.
std::size_t Receiver::findStartPair(std::span<const std::uint8_t> bytes) {
  std::size_t i = 0;
  while (i < bytes.size() && !(seenStart1_ && seenStart2_)) {
    const std::uint8_t byte = bytes[i++];
    seenStart2_ = seenStart1_ && byte == kStart2;
    seenStart1_ = seenStart2_ || byte == kStart1;
  }
  return i;
}

void Receiver::take(std::span<const std::uint8_t> bytes) {
  if (requireStartPair && count == 0) bytes = bytes.subspan(findStartPair(bytes));
  if (!armed || bytes.empty()) return;
  auto from = bytes.begin();
  if (count == 0) from = std::find(bytes.begin(), bytes.end(), kFromTarget);
  const auto room = static_cast<std::ptrdiff_t>(kCapacity - count);
  const auto stored = std::min<std::ptrdiff_t>(bytes.end() - from, room);
  std::copy_n(from, stored, buffer.begin() + count);
  count += static_cast<int>(stored);
  if (count >= 3) judge();
}

void Receiver::judge() {
  const int whole = length();
  if (whole == 0) return drop();
  if (count < whole) return;
  if (whole < kShortestFrame || buffer[static_cast<std::size_t>(whole - 1)] != kEnd) return drop();
  if (!sumMatches()) {
    frameBad = true;
    return drop();
  }
  frameOk = true;
  seenStart1_ = seenStart2_ = false;
}

bool Receiver::completedBy(std::span<const std::uint8_t> bytes) const {
  Receiver ahead = *this;
  ahead.take(bytes);
  return ahead.frameOk;
}

Reply Receiver::reply() const {
  Reply reply;
  std::copy_n(buffer.begin(), length(), reply.bytes.begin());
  return reply;
}

bool Receiver::sumMatches() const {
  const auto whole = static_cast<std::size_t>(length());
  const bool wide = boardCrcMode || frame2;
  const std::span<const std::uint8_t> body(buffer.data(), whole - (wide ? 3 : 2));
  if (boardCrcMode) {
    const std::uint16_t crc = boardCrc(body);
    return buffer[whole - 3] == (crc & 0xFF) && buffer[whole - 2] == crc >> 8;
  }
  const unsigned sum = std::accumulate(body.begin(), body.end(), 0u);
  if (frame2) return (sum & 0xFFFF) == buffer[whole - 3] * 256u + buffer[whole - 2];
  return (sum & 0xFF) == buffer[whole - 2];
}

}  // namespace kvr::engine
