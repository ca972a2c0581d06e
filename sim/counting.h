// How boot firmware counts: one step of its loop takes so many clocks, as seen at 1200 baud. The loop's fixed part
// weighs more the shorter the bits are.
#pragma once

#include <cmath>
#include <utility>

namespace sim {

inline double loopClocks(int baud) {
  constexpr std::pair<int, int> kTable[] = {{115200, 2101}, {57600, 2080}, {38400, 2075}, {28800, 2072}, {19200, 2070},
                                            {14400, 2068},  {9600, 2068},  {4800, 2066},  {2400, 2063}};
  for (const auto& [rate, clocks] : kTable)
    if (rate == baud) return clocks;
  return 2061;
}

// How many times 1200 baud a rate is, as a whole number.
inline int ratioTo1200(int baud) {
  return static_cast<int>(std::lround(baud / 1200.0));
}

}  // namespace sim
