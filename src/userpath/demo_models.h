// The chips whose programs may carry the demo routine, by the model number that it tells.
#pragma once

#include <cstdint>
#include <string_view>

namespace kvr::userpath {

struct DemoModel {
  std::uint16_t number = 0;
  std::string_view name;  // empty: unknown
  std::string_view code;
};

// An unknown number gives an empty name and an empty code.
DemoModel demoModelOf(std::uint16_t number);

}  // namespace kvr::userpath
