// Plays a recorded run again in the virtual world: the same job against the recorded answers. It ends in the same words
// at the same frame, or the first difference is told.
#pragma once

#include <functional>
#include <string>

#include "engine/outcome.h"
#include "engine/run_view.h"
#include "engine/target_link.h"
#include "engine/trace.h"

namespace kvr::replay {

struct Replay {
  engine::Outcome outcome;
  engine::Trace trace;     // of this run; its head has no job
  std::string difference;  // the first one; empty: there is none
};

// What carries the job out on the replayed line.
using Conduct = std::function<engine::Outcome(const engine::RunServices&, engine::RunView&)>;
Replay replay(const engine::Trace& trace, const Conduct& conduct);

// A chip's download, a look at a chip, a trigger or a demo routine's download, from the trace alone: job and images
// come from it. Of a board the difference says that it needs its job.
Replay replay(const engine::Trace& trace);

}  // namespace kvr::replay
