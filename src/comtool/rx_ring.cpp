#include "comtool/rx_ring.h"

#include <algorithm>

namespace kvr::comtool {

std::size_t RxRing::put(std::span<const std::uint8_t> bytes) {
  const std::size_t taken = std::min(bytes.size(), kCapacity - size());
  const std::size_t untilWrap = std::min(taken, kWrap - write_);
  std::copy_n(bytes.begin(), untilWrap, buffer_.begin() + static_cast<std::ptrdiff_t>(write_));
  std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(untilWrap), taken - untilWrap, buffer_.begin());
  write_ = (write_ + taken) % kWrap;
  return taken;
}

std::vector<std::uint8_t> RxRing::takeAll() {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(size());
  const auto at = [this](std::size_t index) { return buffer_.begin() + static_cast<std::ptrdiff_t>(index); };
  const std::size_t upTo = write_ >= read_ ? write_ : kWrap;
  bytes.insert(bytes.end(), at(read_), at(upTo));
  if (write_ < read_) bytes.insert(bytes.end(), at(0), at(write_));
  read_ = write_;
  return bytes;
}

}  // namespace kvr::comtool
