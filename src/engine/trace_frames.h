// A trace as the frames that went over the line, one a line, for a person who looks for the one that went wrong.
#pragma once

#include <string>
#include <vector>

#include "engine/trace.h"

namespace kvr::engine {

struct TraceFrame {
  enum class Sum { None, Good, Bad };  // None: bytes that are no frame
  platform::Micros at{0};              // of the first byte
  std::string stage;                   // in which the run was; empty: none yet
  bool toTarget = true;
  std::string
      kind;  // such as "erase", "data 0380", "sync", "bytes", "answer 84"; of what is no frame on the line: "open"
  std::vector<std::uint8_t> bytes;
  int times = 1;
  Sum sum = Sum::None;
  std::string text;  // of what is no frame: the message, the settings
};

// Frames, loose bytes, and what happened to the port, in order.
std::vector<TraceFrame> framesOf(const Trace& trace);

// "   1.234567  erase     >  erase  59 bytes, sum good"
std::string frameLine(const TraceFrame& frame);

}  // namespace kvr::engine
