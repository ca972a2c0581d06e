// Finds the frames that a monitored firmware sends in the middle of whatever else it writes.
//
// On the line: A5 5A, then the frame: AA, its length N (two bytes, high first, counted from AA through the sum), the
// record type, ..., and the low 8 bits of the sum of all bytes from AA on. N is 1 to 1099. The search keeps its state
// from chunk to chunk, so it does not matter where reads cut the stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kvr::monitor {

using Frame = std::vector<std::uint8_t>;  // AA through the sum, the sum proved

class FrameSearch {
 public:
  static constexpr std::size_t kMaxFrame = 1099;

  // Takes in a chunk and returns the good frames that it completed, in order.
  std::vector<Frame> feed(std::span<const std::uint8_t> bytes);

  // True from a preamble on until its frame has come whole and good: a frame that got lost, or came damaged, is to be
  // asked for again when the line falls silent.
  bool owesFrame() const { return damaged_ || state_ == State::Preamble || state_ == State::InFrame; }
  void reset();

 private:
  enum class State { Idle, FirstByte, Preamble, InFrame };
  void take(std::uint8_t byte, std::vector<Frame>& found);
  void takeIntoFrame(std::uint8_t byte, std::vector<Frame>& found);
  std::size_t wantedLength() const;

  State state_ = State::Idle;
  bool damaged_ = false;  // a frame was given up since the last good one
  Frame frame_;
};

}  // namespace kvr::monitor
