// What a user may try after a run that failed, as far as the outcome tells it. Offered beside the sign; nothing of it
// is ever done by itself.
#pragma once

#include <span>
#include <string>

#include "engine/outcome.h"

namespace kvr::download {

struct Remedy {
  std::string model;  // the connected chip's own, to be selected; empty: none
  int baud = 0;       // bit/s, to be the new Max Baud for another try; 0: none
  bool operator==(const Remedy&) const = default;
};

// `selected`: the model of the run. `rates`: of the list of Max Baud, bit/s, in any order.
Remedy remedyOf(const engine::Outcome& outcome, const std::string& selected, std::span<const int> rates);
std::string selectText(const Remedy& remedy);
std::string lowerBaudText(const Remedy& remedy);

}  // namespace kvr::download
