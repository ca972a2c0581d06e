// Addresses from `first` through `last`.
#pragma once

#include <cstdint>

namespace kvr::catalogue {

struct AddressRange {
  std::int32_t first = 0;
  std::int32_t last = 0;
  bool operator==(const AddressRange&) const = default;
};

}  // namespace kvr::catalogue
