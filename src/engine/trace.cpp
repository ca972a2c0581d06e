#include "engine/trace.h"

#include <algorithm>

namespace kvr::engine {

const std::string& Trace::field(std::string_view key) const {
  static const std::string kNone;
  const auto found = std::find_if(head.begin(), head.end(), [&](const TraceField& field) { return field.key == key; });
  return found == head.end() ? kNone : found->value;
}

}  // namespace kvr::engine
