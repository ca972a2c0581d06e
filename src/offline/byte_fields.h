// Numbers in byte fields.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kvr::offline {

// Stores the low `size` bytes of the value from `at` on, most significant byte first.
inline void putBig(std::span<std::uint8_t> bytes, std::size_t at, std::size_t size, std::int64_t value) {
  for (std::size_t i = size; i-- > 0; value >>= 8) bytes[at + i] = static_cast<std::uint8_t>(value);
}

}  // namespace kvr::offline
