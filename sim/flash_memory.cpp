#include "sim/flash_memory.h"

#include <algorithm>
#include <random>

namespace sim {

FlashMemory::FlashMemory(std::size_t size, std::size_t protectedFrom, std::uint64_t seed)
    : bytes_(size), state_(size, 0), protectedFrom_(std::min(protectedFrom, size)) {
  std::mt19937_64 rng(seed);
  std::generate(bytes_.begin(), bytes_.end(), [&] { return static_cast<std::uint8_t>(rng() >> 24); });
}

int FlashMemory::erase(std::int64_t first, std::int64_t last) {
  first = std::max<std::int64_t>(first, 0);
  last = std::min(last, static_cast<std::int64_t>(protectedFrom_) - 1);
  if (last < first) return 0;
  const auto begin = static_cast<std::ptrdiff_t>(first), end = static_cast<std::ptrdiff_t>(last + 1);
  std::fill(bytes_.begin() + begin, bytes_.begin() + end, 0xFF);
  std::fill(state_.begin() + begin, state_.begin() + end, kErased);
  return static_cast<int>(last / 512 - first / 512 + 1);
}

bool FlashMemory::write(std::size_t address, std::span<const std::uint8_t> bytes) {
  if (address + bytes.size() > protectedFrom_) return false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::uint8_t& state = state_[address + i];
    if (!(state & kErased)) ++unerasedWrites_;
    bytes_[address + i] &= bytes[i];
    state |= kWritten;
  }
  return true;
}

}  // namespace sim
