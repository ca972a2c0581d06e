#include "download/remedy.h"

#include "catalogue/mcu_record.h"

namespace kvr::download {
namespace {

using engine::Stage;

std::string modelToSelect(const engine::Outcome& outcome, const std::string& selected) {
  const std::string told = outcome.wrongModel && outcome.chip ? outcome.chip->model : std::string();
  return !told.empty() && told != selected && catalogue::findByName(told) ? told : std::string();
}

// Where the line at the data's rate is what may have failed.
bool rateMayHaveFailed(const engine::Outcome& outcome) {
  const bool atFastRate =
      outcome.stage == Stage::Baud || outcome.stage == Stage::Erase || outcome.stage == Stage::Program;
  return outcome.kind == engine::RunKind::Chip && outcome.ending == engine::Ending::Failed && atFastRate &&
         !outcome.portLost;
}

int nextLower(const engine::Outcome& outcome, std::span<const int> rates) {
  int best = 0;
  for (const int rate : rates)
    if (rate < outcome.triedBaud && rate >= outcome.firstBaud && rate > best) best = rate;
  return best;
}

}  // namespace

Remedy remedyOf(const engine::Outcome& outcome, const std::string& selected, std::span<const int> rates) {
  return {.model = modelToSelect(outcome, selected),
          .baud = rateMayHaveFailed(outcome) ? nextLower(outcome, rates) : 0};
}

std::string selectText(const Remedy& remedy) {
  return "Select " + remedy.model;
}

std::string lowerBaudText(const Remedy& remedy) {
  return "Lower Max Baud to " + std::to_string(remedy.baud) + " and try again";
}

}  // namespace kvr::download
