#include "engine/outcome.h"

#include <numeric>

namespace kvr::engine {

std::string_view nameOf(Stage stage) {
  static constexpr std::array<std::string_view, kStages> kNames = {
      "prepare", "wait for power", "identify", "baud", "erase", "program", "finish", "options", "report"};
  return kNames[static_cast<std::size_t>(stage)];
}

platform::Micros Outcome::sinceAnswer() const {
  const auto first = spent.begin() + static_cast<std::ptrdiff_t>(Stage::Identify);
  return std::accumulate(first, spent.end(), platform::Micros{0});
}

}  // namespace kvr::engine
