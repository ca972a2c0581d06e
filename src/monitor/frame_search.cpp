#include "monitor/frame_search.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kvr::monitor {

namespace {

constexpr std::uint8_t kPreamble1 = 0xA5;
constexpr std::uint8_t kPreamble2 = 0x5A;
constexpr std::uint8_t kFrameStart = 0xAA;
constexpr std::size_t kHeadSize = 3;  // AA and the length

bool sumIsGood(const Frame& frame, std::size_t length) {
  const auto end = frame.begin() + static_cast<std::ptrdiff_t>(length) - 1;
  return static_cast<std::uint8_t>(std::accumulate(frame.begin(), end, 0U)) == *end;
}

}  // namespace

std::vector<Frame> FrameSearch::feed(std::span<const std::uint8_t> bytes) {
  std::vector<Frame> found;
  while (!bytes.empty()) {
    if (state_ == State::Idle) {
      const auto start = std::find(bytes.begin(), bytes.end(), kPreamble1);
      bytes = bytes.subspan(static_cast<std::size_t>(start - bytes.begin()));
      if (bytes.empty()) break;
    }
    take(bytes.front(), found);
    bytes = bytes.subspan(1);
  }
  return found;
}

void FrameSearch::reset() {
  state_ = State::Idle;
  damaged_ = false;
  frame_.clear();
}

void FrameSearch::take(std::uint8_t byte, std::vector<Frame>& found) {
  const State otherwise = byte == kPreamble1 ? State::FirstByte : State::Idle;
  switch (state_) {
    case State::Idle:
      state_ = otherwise;
      break;
    case State::FirstByte:
      state_ = byte == kPreamble2 ? State::Preamble : otherwise;
      break;
    case State::Preamble:
      state_ = otherwise;
      if (byte != kFrameStart) break;
      state_ = State::InFrame;
      frame_.assign(1, byte);
      break;
    case State::InFrame:
      takeIntoFrame(byte, found);
      break;
  }
}

// 0 while it is not known, and for a frame that says so: that one never gets whole.
std::size_t FrameSearch::wantedLength() const {
  return frame_.size() < kHeadSize ? 0 : static_cast<std::size_t>(frame_[1]) << 8 | frame_[2];
}

void FrameSearch::takeIntoFrame(std::uint8_t byte, std::vector<Frame>& found) {
  frame_.push_back(byte);
  const std::size_t length = wantedLength();
  const bool whole = length > 0 && frame_.size() >= length;
  if (!whole && frame_.size() <= kMaxFrame) return;
  state_ = State::Idle;
  if (whole && length <= kMaxFrame && sumIsGood(frame_, length)) {
    damaged_ = false;
    found.push_back(std::exchange(frame_, {}));
  } else {
    damaged_ = true;
    frame_.clear();
  }
}

}  // namespace kvr::monitor
