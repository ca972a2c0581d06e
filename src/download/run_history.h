// The last runs of the window, for the picture that compares two of them. Nothing of it is kept on the disk.
#pragma once

#include <deque>
#include <string>

#include "engine/outcome.h"

namespace kvr::download {

// One end of a run (of each round, when it repeats).
struct RunRecord {
  engine::Outcome outcome;
  std::string time;          // "yyyy-mm-dd hh:mm:ss"
  std::string model;         // selected
  std::string serialNumber;  // what the chip carries; empty without a counter
};

class RunHistory {
 public:
  // A run that sent nothing is no run to look at.
  void add(const RunRecord& record);
  // Null: there was none yet.
  const RunRecord* last() const { return runs_.empty() ? nullptr : &runs_.back(); }
  // What the last one is best compared with: after a failure the last good run of the same kind and model, otherwise
  // the run before it.
  const RunRecord* toCompare() const;

 private:
  static constexpr std::size_t kKept = 100;
  std::deque<RunRecord> runs_;
};

}  // namespace kvr::download
