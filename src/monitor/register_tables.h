// The special function registers that the monitor lists by name, for the families whose firmware can send them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kvr::monitor {

struct NamedRegister {
  std::uint8_t address;
  std::string_view name;
};

// In the order of the list; empty for a family without a table.
std::span<const NamedRegister> registerTable(int family);

}  // namespace kvr::monitor
