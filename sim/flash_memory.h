// A chip's memory: full of what a former owner left, erased to FF by ranges, written once between erases. A write only
// clears bits: what was not erased, or is written twice, holds less than what was meant.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace sim {

class FlashMemory {
 public:
  // `size` bytes; those at and above `protectedFrom` hold the boot firmware and are never erased or written.
  FlashMemory(std::size_t size, std::size_t protectedFrom, std::uint64_t seed);

  std::size_t protectedFrom() const { return protectedFrom_; }
  // Both ends included; what lies in the boot block is left alone. Returns the count of 512-byte sectors touched.
  int erase(std::int64_t first, std::int64_t last);
  bool isErased(std::size_t address) const { return state_[address] & kErased; }
  // False, and nothing stored, when any byte would fall into the boot block.
  bool write(std::size_t address, std::span<const std::uint8_t> bytes);

  std::span<const std::uint8_t> bytes() const { return bytes_; }
  bool isWritten(std::size_t address) const { return state_[address] & kWritten; }
  std::int64_t unerasedWrites() const { return unerasedWrites_; }  // bytes stored where no erase had been

 private:
  static constexpr std::uint8_t kErased = 1, kWritten = 2;
  std::vector<std::uint8_t> bytes_;
  std::vector<std::uint8_t> state_;
  std::size_t protectedFrom_;
  std::int64_t unerasedWrites_ = 0;
};

}  // namespace sim
