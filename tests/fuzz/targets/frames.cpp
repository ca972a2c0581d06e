// What chips, boards, demo routines and monitored firmwares send. The first byte cuts the stream and sets the
// receiver's modes.
#include <algorithm>
#include <numeric>
#include <span>

#include "engine/receiver.h"
#include "tests/fuzz/targets.h"
#include "tests/monitor/stream_check.h"
#include "userpath/demo_frames.h"

namespace kvr::fuzz {
namespace {

unsigned sumOf(std::span<const std::uint8_t> bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0U);
}

// CRC-16/MODBUS bit by bit.
unsigned crcOf(std::span<const std::uint8_t> bytes) {
  unsigned crc = 0xFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? crc >> 1 ^ 0xA001 : crc >> 1;
  }
  return crc;
}

std::string faultOfReceiver(engine::Receiver receiver, std::span<const std::uint8_t> stream, std::size_t cut) {
  receiver.armed = true;
  for (const auto& piece : {stream.first(cut), stream.subspan(cut)}) {
    if (receiver.frameOk) break;
    receiver.take(piece);
    if (receiver.count < 0 || receiver.count > engine::Receiver::kCapacity) return "more bytes than there is room for";
  }
  if (!receiver.frameOk) return {};
  const auto length = static_cast<std::size_t>(receiver.length());
  const std::span<const std::uint8_t> frame(receiver.buffer.data(), length);
  if (length < 6 || frame[0] != 0x68 || frame[length - 1] != 0x16) return "a good frame without its ends";
  const unsigned word = frame[length - 3] * 256U + frame[length - 2];
  const unsigned swapped = frame[length - 2] * 256U + frame[length - 3];
  if (receiver.boardCrcMode) return crcOf(frame.first(length - 3)) == swapped ? "" : "a good frame with a bad CRC";
  if (receiver.frame2) return (sumOf(frame.first(length - 3)) & 0xFFFF) == word ? "" : "a good frame with a bad sum";
  return (sumOf(frame.first(length - 2)) & 0xFF) == frame[length - 2] ? "" : "a good frame with a bad sum";
}

}  // namespace

std::string faultOfChipFrames(const Bytes& input) {
  if (input.empty()) return {};
  engine::Receiver receiver;
  receiver.requireStartPair = input[0] & 1;
  receiver.frame2 = input[0] & 2;
  const auto stream = std::span(input).subspan(1);
  return faultOfReceiver(receiver, stream, std::min<std::size_t>(input[0] >> 2, stream.size()));
}

std::string faultOfBoardFrames(const Bytes& input) {
  if (input.empty()) return {};
  engine::Receiver receiver;
  receiver.requireStartPair = true;
  receiver.boardCrcMode = true;
  const auto stream = std::span(input).subspan(1);
  return faultOfReceiver(receiver, stream, std::min<std::size_t>(input[0], stream.size()));
}

std::string faultOfDemoFrames(const Bytes& input) {
  userpath::DemoReceiver whole;
  whole.take(input);
  if (whole.buffer.size() > userpath::DemoReceiver::kCapacity) return "more bytes than there is room for";
  for (std::size_t cut = 0; cut <= input.size(); cut += 1 + input.size() / 100) {
    userpath::DemoReceiver pieces;
    pieces.take(std::span(input).first(cut));
    pieces.take(std::span(input).subspan(cut));
    if (pieces.frameOk != whole.frameOk || pieces.buffer != whole.buffer) return "read otherwise when it is cut";
  }
  if (!whole.frameOk) return {};
  const std::span<const std::uint8_t> frame(whole.buffer);
  const std::size_t length = frame.size();
  if (length < 7 || frame[0] != 0x5A || frame[1] != 0xA5 || frame.back() != 0x16) return "a reply without its ends";
  const unsigned sum = frame[length - 3] * 256U + frame[length - 2];
  return (sumOf(frame.first(length - 3)) & 0xFFFF) == sum ? "" : "a good reply with a bad sum";
}

std::string faultOfMonitor(const Bytes& input) {
  return monitor::faultOf(input);
}

}  // namespace kvr::fuzz
