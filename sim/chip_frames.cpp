#include "sim/chip_frames.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::uint8_t kHead[3] = {0x46, 0xB9, 0x6A};
constexpr int kShortest = 6;

// The long option frame of the families from 7 on carries two bytes of sum whatever the family's other frames do.
bool isWideWhateverTheFamily(const Bytes& wire) {
  return wire[5] == 0x8D && wire[4] == 27;
}

}  // namespace

std::span<const std::uint8_t> HostFrame::payload(bool wideSum) const {
  const std::size_t tail = (wideSum || isWideWhateverTheFamily(wire) ? 2 : 1) + 1;
  if (wire.size() < 6 + tail) return {};
  return std::span(wire).subspan(6, wire.size() - 6 - tail);
}

void FrameReader::keepStart() {
  while (!bytes_.empty()) {
    const std::size_t known = std::min<std::size_t>(bytes_.size(), 3);
    if (std::equal(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(known), kHead)) return;
    bytes_.erase(bytes_.begin());
  }
  damaged_ = false;
}

const HostFrame* FrameReader::take(Micros at, const Heard& heard) {
  if (!bytes_.empty() && at - lastAt_ > gap_) reset();
  lastAt_ = at;
  bytes_.push_back(heard.byte);
  damaged_ = damaged_ || heard.damage != Damage::none;
  if (bytes_.size() <= 3) keepStart();
  if (bytes_.size() <= 1) begun_ = at;
  if (bytes_.size() < 5) return nullptr;
  const std::size_t length = bytes_[3] * 256U + bytes_[4];
  const bool senseless = length < kShortest || length > 255;
  if (!senseless && bytes_.size() < length + 2) return nullptr;
  finish();
  if (senseless) frame_.wire.resize(8, 0), frame_.endGood = frame_.sumGood = false;
  return &frame_;
}

void FrameReader::finish() {
  frame_.wire = std::move(bytes_);
  frame_.damaged = damaged_;
  frame_.begun = begun_;
  reset();
  const Bytes& wire = frame_.wire;
  const std::size_t size = wire.size();
  const bool wide = size > 8 && (check_ != FrameCheck::sum8 || isWideWhateverTheFamily(wire));
  const std::size_t at = size - (wide ? 3 : 2);
  const auto span = std::span(wire).subspan(2, at - 2);
  frame_.endGood = wire.back() == 0x16;
  if (check_ == FrameCheck::crc) {
    frame_.sumGood = wide && wire[at] + 256 * wire[at + 1] == crc16(span);
  } else {
    const int sum = sumOf(span);
    frame_.sumGood = wide ? wire[at] == ((sum >> 8) & 255) && wire[at + 1] == (sum & 255) : wire[at] == (sum & 255);
  }
}

std::uint16_t crc16(std::span<const std::uint8_t> bytes) {
  unsigned crc = 0xFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1;
  }
  return static_cast<std::uint16_t>(crc);
}

Bytes buildCrcReply(std::uint8_t command, std::span<const std::uint8_t> payload) {
  Bytes wire = buildReply(command, payload, true);
  const std::uint16_t crc = crc16(std::span(wire).subspan(2, wire.size() - 5));
  wire[wire.size() - 3] = static_cast<std::uint8_t>(crc);
  wire[wire.size() - 2] = static_cast<std::uint8_t>(crc >> 8);
  return wire;
}

Bytes buildReply(std::uint8_t command, std::span<const std::uint8_t> payload, bool wideSum) {
  const int length = static_cast<int>(payload.size()) + (wideSum ? 7 : 6);
  Bytes wire = {0x46, 0xB9, 0x68, 0, static_cast<std::uint8_t>(length), command};
  wire.insert(wire.end(), payload.begin(), payload.end());
  const int sum = sumOf(std::span(wire).subspan(2));
  if (wideSum) wire.push_back(static_cast<std::uint8_t>(sum >> 8));
  wire.push_back(static_cast<std::uint8_t>(sum));
  wire.push_back(0x16);
  return wire;
}

}  // namespace sim
