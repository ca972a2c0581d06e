// One line a figure: name, value, unit.
#pragma once

#include <algorithm>
#include <cstdio>
#include <vector>

namespace bench {

inline void figure(const char* name, double value, const char* unit) {
  std::printf("%-32s %10.4g %s\n", name, value, unit);
  std::fflush(stdout);
}

// The same, and false when the figure misses what is asked of it.
inline bool atMost(const char* name, double value, const char* unit, double limit) {
  figure(name, value, unit);
  if (value > limit) std::printf("# %s: over its limit of %g %s\n", name, limit, unit);
  return value <= limit;
}
inline bool atLeast(const char* name, double value, const char* unit, double limit) {
  figure(name, value, unit);
  if (value < limit) std::printf("# %s: short of the %g %s it shall reach\n", name, limit, unit);
  return value >= limit;
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.at(values.size() / 2);
}

inline double percentile(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  return values.at(static_cast<std::size_t>(share * static_cast<double>(values.size() - 1)));
}

}  // namespace bench
