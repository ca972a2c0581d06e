#include "replay/replay.h"

#include <algorithm>
#include <cctype>

#include "engine/chip_run.h"
#include "engine/run_tracer.h"
#include "engine/trace_job.h"
#include "engine/tracing_view.h"
#include "platform/text.h"
#include "replay/replay_link.h"
#include "replay/wire_images.h"
#include "userpath/trigger_run.h"

namespace kvr::replay {
namespace {

using engine::TraceEvent;
using platform::Millis;
using platform::VirtualLoop;

constexpr Millis kPatience = std::chrono::hours(1);  // beyond the length of the trace

// Shows the time that it was when the trace was taken.
class ReplayClock : public platform::WallClock {
 public:
  // `began`: "yyyy-mm-dd hh:mm:ss", with or without a fraction.
  ReplayClock(const VirtualLoop& loop, const std::string& began) : loop_(loop), date_(began.substr(0, 10)) {
    if (began.size() < 19) return;
    const auto part = [&](std::size_t at, std::size_t size) { return platform::valueOf(began.substr(at, size)); };
    const double seconds = part(11, 2) * 3600 + part(14, 2) * 60 + part(17, std::string::npos);
    start_ = platform::Micros(platform::roundEven(seconds * 1e6));
  }
  std::string timeOfDay() const override {
    const auto all = std::chrono::duration_cast<std::chrono::seconds>(start_ + loop_.now()).count();
    return platform::padLeft(std::to_string(all / 3600 % 24), 2) + ":" + platform::minutesText(all % 3600);
  }
  std::string dateTime() const override { return date_ + " " + timeOfDay(); }

 private:
  const VirtualLoop& loop_;
  std::string date_;
  platform::Micros start_{0};
};

// Times within a text may differ by a tick: "[00:05]", "(End: 12:00:01)".
std::string withoutTimes(std::string text) {
  const auto digit = [&](std::size_t at) {
    return at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]));
  };
  for (std::size_t i = 0; i + 4 < text.size(); ++i)
    if (digit(i) && digit(i + 1) && text[i + 2] == ':' && digit(i + 3) && digit(i + 4))
      for (const std::size_t at : {i, i + 1, i + 3, i + 4}) text[at] = '0';
  return text;
}

std::vector<std::string> saidIn(const engine::Trace& trace) {
  std::vector<std::string> said;
  for (const TraceEvent& event : trace.events)
    if (event.kind == TraceEvent::Kind::Said) said.push_back(withoutTimes(event.text));
  return said;
}

std::string differenceOf(const std::string& what, const std::string& now, const std::string& then) {
  return what + " \"" + now + "\"; the trace has \"" + then + "\"";
}

std::string differenceOfWords(const engine::Trace& now, const engine::Trace& then) {
  const auto said = saidIn(now), wanted = saidIn(then);
  const auto [a, b] = std::ranges::mismatch(said, wanted);
  if (a == said.end() && b == wanted.end()) return {};
  return differenceOf("it says", a == said.end() ? "" : *a, b == wanted.end() ? "" : *b);
}

std::string differenceOfEnds(const engine::Trace& now, const engine::Trace& then) {
  for (const char* key : {"ending", "stage", "words", "chip", "firmware", "baud", "left out"})
    if (withoutTimes(now.field(key)) != withoutTimes(then.field(key)))
      return differenceOf(std::string("it ends with the ") + key, now.field(key), then.field(key));
  return {};
}

std::string firstDifference(const ReplayLink& link, const engine::Trace& now, const engine::Trace& then) {
  if (!link.difference().empty()) return link.difference();
  if (auto words = differenceOfWords(now, then); !words.empty()) return words;
  if (auto ends = differenceOfEnds(now, then); !ends.empty()) return ends;
  return link.missing().empty() ? std::string() : "it ends; " + link.missing();
}

// One run, with all that it needs around it.
struct Stage {
  explicit Stage(const engine::Trace& trace) : script(scriptOf(trace)), clock(loop, trace.field("began")) {
    stop.onRequest = [this] { tracer.stopAsked(); };
    link.onStop = [this](bool closes) {
      stop.request();
      if (closes) lease.close();
    };
    loop.after(std::chrono::ceil<Millis>(2 * script.length) + kPatience, [this] { stop.request(); });
  }

  VirtualLoop loop;
  Script script;
  ReplayClock clock;
  ReplayLink link{loop, script};
  engine::RunTracer tracer{loop, clock, link};
  engine::RunStop stop;
  engine::PortLease lease{loop, tracer.link()};
  engine::SilentView silent;
  engine::TracingView view{silent, tracer.recorder()};
};

Replay impossible(const std::string& why) {
  return {.outcome = {}, .trace = {}, .difference = why};
}

}  // namespace

Replay replay(const engine::Trace& trace, const Conduct& conduct) {
  Stage stage(trace);
  if (stage.script.thinned) return impossible("the trace was thinned: not all that came is in it");
  stage.tracer.begin(engine::RunKind::Chip, engine::Job{});
  Replay replay;
  try {
    replay.outcome = conduct({stage.loop, stage.clock, stage.lease, stage.stop}, stage.view);
  } catch (const platform::StalledWorld&) {
    return impossible("it waits for what the trace does not have");
  }
  stage.tracer.end(replay.outcome);
  replay.trace = stage.tracer.trace();
  replay.difference = firstDifference(stage.link, replay.trace, trace);
  return replay;
}

Replay replay(const engine::Trace& trace) {
  const std::string& kind = trace.field("run");
  std::optional<engine::Job> job = jobOf(trace);
  if (!job) return impossible("the trace has no job, or one of a model that is not known");
  fillImages(*job, trace);
  if (kind == kindText(engine::RunKind::Chip) || kind == kindText(engine::RunKind::Check))
    return replay(trace, [&](const engine::RunServices& services, engine::RunView& view) {
      engine::ChipRun run(*job, services, view);
      engine::NoBooks books;
      return kind == kindText(engine::RunKind::Chip) ? run.program(books) : run.check();
    });
  if (kind == kindText(engine::RunKind::Trigger))
    return replay(trace, [&](const engine::RunServices& services, engine::RunView& view) {
      return userpath::sendTrigger(*job, {trace.field("line"), trace.field("command")}, services, view);
    });
  if (kind != kindText(engine::RunKind::Demo)) return impossible("a run of kind " + kind + " needs its job");
  userpath::DemoJob demo{.job = *job, .settings = trace.field("line"), .command = {}};
  if (!trace.field("command line").empty()) demo.command = {trace.field("command line"), trace.field("command")};
  return replay(trace, [&](const engine::RunServices& services, engine::RunView& view) {
    return userpath::DemoRun(demo, services, view).program();
  });
}

}  // namespace kvr::replay
