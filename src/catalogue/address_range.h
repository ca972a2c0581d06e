// A run of addresses: the one span type of all rooms.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

namespace kvr::catalogue {

struct AddressRange {
  std::int32_t first = 0;
  std::int32_t last = -1;  // inclusive; below `first`: empty
  constexpr bool empty() const { return last < first; }
  constexpr bool holds(std::int32_t address) const { return address >= first && address <= last; }
  constexpr std::int64_t count() const { return empty() ? 0 : std::int64_t{last} - first + 1; }
  bool operator==(const AddressRange&) const = default;
};

// Whether each address of the field lies in one of the ranges, such as every byte of a serial number in what a run
// sends. The ranges may touch or overlap, in any order. An empty field is covered.
inline bool isCovered(AddressRange field, std::span<const AddressRange> ranges) {
  std::int64_t next = field.first;
  while (next <= field.last) {
    const auto found = std::find_if(ranges.begin(), ranges.end(), [&](const AddressRange& range) {
      return range.holds(static_cast<std::int32_t>(next));
    });
    if (found == ranges.end()) return false;
    next = std::int64_t{found->last} + 1;
  }
  return true;
}

}  // namespace kvr::catalogue
