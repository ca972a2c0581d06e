// Faults as a command line names them, and faults that happen a given number of times.
#pragma once

#include <charconv>
#include <map>
#include <optional>
#include <string_view>

namespace sim {

inline bool toNumber(std::string_view text, int& number, int base = 10) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

// "what:times" or "what:times:silent".
struct CountedFault {
  int what = 0;
  int times = 0;
  bool silently = false;
};

inline std::optional<CountedFault> parseCounted(std::string_view text, int base) {
  constexpr std::string_view kSilent = ":silent";
  CountedFault fault;
  fault.silently = text.ends_with(kSilent);
  if (fault.silently) text.remove_suffix(kSilent.size());
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos || !toNumber(text.substr(0, colon), fault.what, base) ||
      !toNumber(text.substr(colon + 1), fault.times))
    return std::nullopt;
  return fault;
}

// Takes one off what is left for this key; false when nothing was.
inline bool countDown(std::map<int, int>& counts, int key) {
  const auto it = counts.find(key);
  if (it == counts.end() || it->second <= 0) return false;
  --it->second;
  return true;
}

}  // namespace sim
