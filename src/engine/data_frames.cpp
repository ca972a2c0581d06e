#include "engine/data_frames.h"

#include <numeric>

namespace kvr::engine {
namespace {

std::uint16_t sumOf(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint16_t>(std::accumulate(bytes.begin(), bytes.end(), 0u));
}

// Address and count in front of the data, both high byte first.
Bytes addressed(std::int32_t first, std::span<const std::uint8_t> data) {
  Bytes payload;
  for (const int shift : {24, 16, 8, 0}) payload.push_back(static_cast<std::uint8_t>(first >> shift));
  payload.push_back(static_cast<std::uint8_t>(data.size() >> 8));
  payload.push_back(static_cast<std::uint8_t>(data.size()));
  payload.insert(payload.end(), data.begin(), data.end());
  return payload;
}

}  // namespace

DataFrame buildDataFrame(std::int32_t first, std::span<const std::uint8_t> data, std::uint8_t command, SumForm form) {
  return {buildFrame(command, addressed(first, data), form), sumOf(data)};
}

DataFrame buildDemoDataFrame(std::int32_t first, std::span<const std::uint8_t> data, std::uint8_t command) {
  const std::size_t length = data.size() + 14;
  Bytes frame = {0x5A, 0xA5, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length), command};
  const Bytes payload = addressed(first, data);
  frame.insert(frame.end(), payload.begin(), payload.end());
  const std::uint16_t sum = sumOf(frame);
  frame.insert(frame.end(), {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum), 0x16});
  return {frame, sumOf(data)};
}

DataFrame ChipDataFrames::build(std::int32_t first, std::span<const std::uint8_t> data, bool retried) const {
  return buildDataFrame(first, data, retried ? 0x30 : 0x00, sumFormOf(record_));
}

// A chip that got one block twice, because its first answer was late, must not have the second answer taken for that of
// the next block: where the sums are alike, as in blank areas, nothing else tells them apart.
bool ChipDataFrames::send(const DataFrame& frame, Millis limit) {
  link_.beginFrame(link_.turnRound());
  link_.write(frame.wire);
  const auto reply = link_.awaitAnswer(limit);
  return reply && accepts(*reply, frame.dataSum);
}

// Some chips of the first generation answer without a sum: a frame of length 6.
bool ChipDataFrames::accepts(const Reply& reply, std::uint16_t dataSum) const {
  const auto low = static_cast<std::uint8_t>(dataSum);
  if (record_.extSession) return reply[3] == 0x00 && reply[4] == low;
  const bool sumless = reply[1] == 0x00 && reply[2] == 0x06;
  return reply[3] == 0x80 && (sumless || reply[4] == low);
}

}  // namespace kvr::engine
