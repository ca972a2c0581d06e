#include "cli/evidence.h"

#include "engine/trace_files.h"
#include "engine/trace_text.h"
#include "engine/tracing_view.h"

namespace kvr::cli {
namespace {

using Sum = engine::TraceFrame::Sum;

std::string sumText(Sum sum) {
  return sum == Sum::None ? "" : sum == Sum::Good ? "good" : "bad";
}

engine::SumForm sumFormOf(engine::RunKind kind, const engine::Job& job) {
  return kind == engine::RunKind::Board ? engine::SumForm::BoardCrc : engine::sumFormOf(job.record());
}

// "run.txt" and 3: "run-3.txt".
std::string numbered(const std::string& path, int number) {
  if (number == 1) return path;
  const std::size_t name = path.find_last_of('/') + 1, dot = path.find_last_of('.');
  const std::size_t end = dot == std::string::npos || dot <= name ? path.size() : dot;
  return path.substr(0, end) + "-" + std::to_string(number) + path.substr(end);
}

}  // namespace

Fields frameFields(const engine::TraceFrame& frame) {
  return {{"seconds", static_cast<double>(frame.at.count()) / 1e6},
          {"stage", frame.stage},
          {"toTarget", frame.toTarget},
          {"kind", frame.kind},
          {"bytes", engine::hexLine(frame.bytes)},
          {"times", std::int64_t{frame.times}},
          {"sum", sumText(frame.sum)},
          {"text", frame.text}};
}

void Evidence::declare(CLI::App& app) {
  const std::string group = "What went over the line";
  auto* trace = app.add_option("--trace", path_, "Write the trace of the run to this file, however it ends")
                    ->type_name("FILE")
                    ->group(group);
  app.add_flag("-f,--force", force_, "Write over a file that is there")->needs(trace)->group(group);
}

ExitCode Evidence::check(const Desk& desk) const {
  if (path_.empty() || force_ || !desk.files.fileExists(path_)) return ExitCode::Passed;
  return fail(desk, ExitCode::File, path_ + " is there already.", "Say --force to write over it.");
}

engine::Outcome Evidence::watch(const Desk& desk, engine::RunView& view, engine::RunKind kind, const engine::Job& job,
                                const engine::TraceFields& more, const Run& run) const {
  if (path_.empty() && !desk.frames) return run(view);
  engine::LineRecorder& recorder = desk.tracer.recorder();
  engine::FrameDecoder decoder(sumFormOf(kind, job), [&](const engine::TraceFrame& frame) { desk.out.frame(frame); });
  if (desk.frames) recorder.onEvent = [&](const engine::TraceEvent& event) { decoder.take(event); };
  engine::TracingView tracing(view, recorder);
  desk.tracer.begin(kind, job, more);
  engine::Outcome outcome = run(tracing);
  decoder.flush();
  recorder.onEvent = nullptr;
  desk.tracer.end(outcome);
  if (outcome.ending == engine::Ending::Refused) desk.tracer.forget();  // nothing was sent
  return outcome;
}

void Evidence::keep(const Desk& desk) {
  const engine::Trace trace = desk.tracer.trace();
  if (path_.empty() || trace.empty()) return;
  const std::string path = nextPath(desk);
  if (const auto written = engine::TraceFiles(desk.files).write(trace, path); !written)
    return desk.out.note("There is no trace of this run: " + path + ": " + written.error);
  desk.out.result("written", {{"file", path}}, {});
}

engine::Outcome Evidence::conduct(const Desk& desk, engine::RunView& view, engine::RunKind kind, const engine::Job& job,
                                  const engine::TraceFields& more, const Run& run) {
  engine::Outcome outcome = watch(desk, view, kind, job, more, run);
  keep(desk);
  return outcome;
}

// Of several runs each gets a number of its own; names of files that are there are passed over.
std::string Evidence::nextPath(const Desk& desk) {
  do ++number_;
  while (!force_ && desk.files.fileExists(numbered(path_, number_)));
  return numbered(path_, number_);
}

}  // namespace kvr::cli
