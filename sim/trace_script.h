// What the device of a recorded run said, and what it had heard until then. Reads the text of docs/trace.md by itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/chip_frames.h"
#include "sim/device.h"

namespace sim {

// Bytes that the host sent, so many times in a row.
struct TraceHeard {
  Bytes bytes;
  int times = 1;
};

// Bytes that the device sent then, the first of them `after` the host's last byte was written.
struct TraceSaid {
  Bytes bytes;
  Micros after = 0;
  Line line;  // as the host was set when it got them
};

struct TraceStep {
  std::vector<TraceHeard> heard;
  std::vector<TraceSaid> said;
};

struct TraceScript {
  std::vector<TraceStep> steps;
  std::string model;
  std::string error;  // why it cannot be played; empty: it can
};

TraceScript readTraceScript(std::string_view text);

}  // namespace sim
