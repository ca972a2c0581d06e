// The special function registers that the monitor lists by name, for the families whose firmware can send them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "catalogue/family.h"

namespace kvr::monitor {

struct NamedRegister {
  std::uint8_t address;
  std::string_view name;
};

// In the order of the list.
std::span<const NamedRegister> registerTable(catalogue::RegisterList list);

}  // namespace kvr::monitor
