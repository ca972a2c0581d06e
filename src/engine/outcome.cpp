#include "engine/outcome.h"

#include <numeric>

namespace kvr::engine {

Outcome refused(RunKind kind, const std::string& words) {
  return {.kind = kind, .ending = Ending::Refused, .words = words};
}

platform::Micros Outcome::sinceAnswer() const {
  const auto first = spent.begin() + static_cast<std::ptrdiff_t>(Stage::Identify);
  return std::accumulate(first, spent.end(), platform::Micros{0});
}

}  // namespace kvr::engine
