// The trace of the last run: what its line carried, which job it had, how it ended. The port and the view that a run
// gets are built on those of this class; see trace_text.h for the file.
#pragma once

#include <optional>
#include <string>

#include "engine/job.h"
#include "engine/line_recorder.h"
#include "engine/outcome.h"
#include "engine/run_stop.h"
#include "engine/tracing_link.h"
#include "platform/wall_clock.h"

namespace kvr::engine {

class RunTracer {
 public:
  RunTracer(const platform::EventLoop& loop, const platform::WallClock& clock, platform::SerialLink& below)
      : clock_(clock), recorder_(loop), link_(below, recorder_) {}

  platform::SerialLink& link() { return link_; }  // for everybody, in place of the port below
  LineRecorder& recorder() { return recorder_; }  // for a TracingView
  void stopAsked() { recorder_.note(TraceEvent::Kind::Stop); }

  // A run begins, its port closed; the trace of the one before is forgotten. `more`: what its job has besides a
  // chip's. Bytes that the job holds are not kept.
  void begin(RunKind kind, const Job& job, const TraceFields& more = {});
  // It has ended. Nothing when no trace was begun: it was refused, or is not wanted.
  void end(const Outcome& outcome);
  void forget();

  // Of the last run that ended; empty: there is none. Built anew by each call.
  Trace trace() const;
  bool hasTrace() const { return !head_.empty() && !recorder_.on(); }

 private:
  const platform::WallClock& clock_;
  LineRecorder recorder_;
  TracingLink link_;
  TraceFields head_;
};

// What the head of a trace calls them.
std::string kindText(RunKind kind);     // "chip", "board", "demo", "trigger", "check"
std::string endingText(Ending ending);  // "refused", "failed", "stopped", "passed", "passed in part"

}  // namespace kvr::engine
