// Traces that users send: what is understood is written and read again, and is the same; no byte of it is lost among
// its frames; and the simulated device's own reader takes it, too.
#include "engine/trace_frames.h"
#include "engine/trace_job.h"
#include "engine/trace_text.h"
#include "replay/script.h"
#include "replay/wire_images.h"
#include "sim/trace_script.h"
#include "tests/fuzz/targets.h"

namespace kvr::fuzz {
namespace {

using Kind = engine::TraceEvent::Kind;

// Bytes of both directions, repeats counted; a repeat of what came means nothing.
std::int64_t bytesOf(const engine::Trace& trace) {
  std::int64_t bytes = 0;
  for (const engine::TraceEvent& event : trace.events)
    bytes += std::ssize(event.bytes) * (event.kind == Kind::Sent ? event.times : 1);
  return bytes;
}

std::int64_t bytesOf(const std::vector<engine::TraceFrame>& frames) {
  std::int64_t bytes = 0;
  for (const engine::TraceFrame& frame : frames) {
    if (frameLine(frame).empty()) return -1;
    bytes += std::ssize(frame.bytes) * frame.times;
  }
  return bytes;
}

}  // namespace

std::string faultOfTrace(const Bytes& input) {
  const std::string text = textOf(input);
  const sim::TraceScript device = sim::readTraceScript(text);
  const engine::ReadTrace read = engine::readTrace(text);
  if (!read.error.empty()) return {};
  const engine::ReadTrace again = engine::readTrace(engine::traceText(read.trace));
  if (!again.error.empty()) return "its own text is refused: " + again.error;
  if (!(again.trace == read.trace)) return "its own text is read otherwise";
  if (bytesOf(framesOf(read.trace)) != bytesOf(read.trace)) return "bytes that are in no frame";
  if (auto job = engine::jobOf(read.trace)) replay::fillImages(*job, read.trace);
  const replay::Script script = replay::scriptOf(read.trace);
  return script.steps.empty() ? "no step" : device.error.empty() || script.thinned ? "" : device.error;
}

}  // namespace kvr::fuzz
