// A trace as the frames that went over the line, one a line, for a person who looks for the one that went wrong.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/frames.h"
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

// Frames, loose bytes, and what happened to the port, in order: of a trace, or of a run while it goes on.
class FrameDecoder {
 public:
  using Sink = std::function<void(const TraceFrame&)>;
  // `form`: of all frames, both ways.
  FrameDecoder(SumForm form, Sink sink) : form_(form), sink_(std::move(sink)) {}
  // The next event. An answer is told when it ends in a good frame, else with the event after it. Bytes that are sent
  // again and again are told at the first time, and how often when they end.
  void take(const TraceEvent& event);
  void flush();  // tells what is left

 private:
  void takeSent(const TraceEvent& event);
  void cut(const TraceEvent& event, bool toTarget);
  void tell(const TraceEvent& event, bool toTarget, std::span<const std::uint8_t> bytes, const std::string& kind,
            TraceFrame::Sum sum);
  void tellMark(const TraceEvent& event);

  SumForm form_;
  Sink sink_;
  std::string stage_;
  TraceEvent answer_;  // what has come of it
  TraceEvent again_;   // what was sent last, and how often since it was told
};

std::vector<TraceFrame> framesOf(const Trace& trace);

// "   1.234567  erase     >  erase  59 bytes, sum good"
std::string frameLine(const TraceFrame& frame);

}  // namespace kvr::engine
