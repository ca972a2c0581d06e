// kvr trace: what went over the line in a run that was traced, and the same run once more against those answers.
#include "cli/command.h"
#include "cli/evidence.h"
#include "engine/trace_text.h"
#include "replay/replay.h"

namespace kvr::cli {
namespace {

constexpr std::size_t kLargestFile = 256 * 1024 * 1024;

class TraceCommand : public Command {
 public:
  std::string name() const override { return "trace"; }
  std::string about() const override { return "Show the trace of a run, or play it again"; }
  std::string example() const override { return "kvr trace show KVR-ISP_2026-11-23_21-55-18_Ivy-HF0S_failed.txt"; }

  void declare(CLI::App& app) override {
    app.add_option("action", action_, "show: its frames; replay: the same job against the recorded answers")
        ->required()
        ->check(CLI::IsMember({"show", "replay"}))
        ->type_name("show|replay");
    app.add_option("file", path_, "The trace")->required()->type_name("FILE");
  }

  ExitCode run(const Desk& desk) override {
    const auto bytes = desk.files.read(path_, kLargestFile);
    if (!bytes) return fail(desk, ExitCode::File, path_ + ": it cannot be read.");
    const auto read = engine::readTrace({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
    if (!read.error.empty()) return fail(desk, ExitCode::File, path_ + ": " + read.error + ".");
    return action_ == "show" ? show(desk, read.trace) : replay(desk, read.trace);
  }

 private:
  static ExitCode show(const Desk& desk, const engine::Trace& trace) {
    for (const engine::TraceField& field : trace.head)
      desk.out.result("field", {{"key", field.key}, {"value", field.value}}, field.key + ": " + field.value);
    for (const engine::TraceFrame& frame : framesOf(trace))
      desk.out.result("frame", frameFields(frame), frameLine(frame));
    return ExitCode::Passed;
  }

  static ExitCode replay(const Desk& desk, const engine::Trace& trace) {
    const replay::Replay again = replay::replay(trace);
    for (const engine::TraceEvent& event : again.trace.events)
      if (event.kind == engine::TraceEvent::Kind::Said) desk.out.say(event.text);
    if (!again.difference.empty())
      return fail(desk, ExitCode::ChipFailed, "It does not end as the trace does: " + again.difference);
    const std::string& ending = trace.field("ending");
    const std::string& words = trace.field("words");
    desk.out.result("replay", {{"ending", ending}, {"words", words}},
                    "It ends as the trace does: " + ending + (words.empty() ? "" : ": " + words));
    return ExitCode::Passed;
  }

  std::string action_, path_;
};

}  // namespace

std::unique_ptr<Command> makeTraceCommand() {
  return std::make_unique<TraceCommand>();
}

}  // namespace kvr::cli
