// Where the time of a run went, in the order of a run. The rows add up to all of it.
#pragma once

#include <array>
#include <string_view>

#include "engine/outcome.h"

namespace kvr::engine {

struct TimeRow {
  std::string_view name;
  platform::Micros time{};
};

// "data on the wire" has the chip's own work in it: a program cannot tell the two apart.
std::array<TimeRow, 9> timeTable(const Outcome& outcome);

}  // namespace kvr::engine
