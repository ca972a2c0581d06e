// The models whose chips have shown that a short turn-round is too little for them. Kept until the program ends.
#pragma once

#include <set>
#include <string>

#include "engine/job.h"
#include "engine/outcome.h"

namespace kvr::download {

class TurnRounds {
 public:
  // Leaves chips of the job's model what others of it have needed.
  void applyTo(engine::Job& job) const {
    if (slow_.contains(nameOf(job))) job.turnRound = engine::kFullTurnRound;
  }
  // A run that ended with more than its job gave it has met a chip that needs it.
  void note(const engine::Job& job, const engine::Outcome& outcome) {
    if (outcome.turnRound > job.turnRound) slow_.insert(nameOf(job));
  }

 private:
  static std::string nameOf(const engine::Job& job) { return std::string(job.record().name); }
  std::set<std::string> slow_;
};

}  // namespace kvr::download
