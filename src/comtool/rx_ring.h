// The bytes that the terminal has received and not yet shown. It decouples a fast line from a slow window: reception
// only copies bytes in. What comes while the ring is full is dropped; what is in it is never overwritten.
//
// Indices run from 0 to 244999; one slot stays free, so that equal indices mean an empty ring. Its buffer is
// read from index 0 by whoever compares a chip's memory dump with an image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kvr::comtool {

class RxRing {
 public:
  static constexpr std::size_t kBufferSize = 245001;
  static constexpr std::size_t kWrap = 245000;  // an index that reaches it goes to 0
  static constexpr std::size_t kCapacity = kWrap - 1;

  // Copies in what fits, in order. Returns how many bytes were taken; the rest is dropped.
  std::size_t put(std::span<const std::uint8_t> bytes);
  // Takes all bytes out, in order.
  std::vector<std::uint8_t> takeAll();
  void clear() { read_ = write_ = 0; }  // both indices to 0

  bool empty() const { return read_ == write_; }
  std::size_t size() const { return write_ >= read_ ? write_ - read_ : write_ + kWrap - read_; }
  std::span<const std::uint8_t> buffer() const { return buffer_; }

 private:
  std::vector<std::uint8_t> buffer_ = std::vector<std::uint8_t>(kBufferSize);
  std::size_t read_ = 0;
  std::size_t write_ = 0;
};

}  // namespace kvr::comtool
