// The models whose chips have shown that a short turn-round is too little for them. Kept until the program ends.
#pragma once

#include <set>
#include <string>

#include "engine/job.h"
#include "engine/outcome.h"

namespace kvr::engine {

class TurnRounds {
 public:
  // Leaves chips of the job's model what others of it have needed.
  void applyTo(Job& job) const {
    if (slow_.contains(nameOf(job))) job.turnRound = kFullTurnRound;
  }
  // A run that ended with more than its job gave it has met a chip that needs it.
  void note(const Job& job, const Outcome& outcome) {
    if (outcome.turnRound > job.turnRound) slow_.insert(nameOf(job));
  }

 private:
  static std::string nameOf(const Job& job) { return std::string(job.record().name); }
  std::set<std::string> slow_;
};

}  // namespace kvr::engine
