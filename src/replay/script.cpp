#include "replay/script.h"

#include "platform/text.h"

namespace kvr::replay {
namespace {

using engine::TraceEvent;
using Kind = TraceEvent::Kind;

constexpr std::size_t kLongFrame = 12;

class Writer {
 public:
  explicit Writer(Script& script) : script_(script) { script_.steps.emplace_back(); }
  ~Writer() { script_.untimed = 2 * early_ > answered_; }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  void take(const TraceEvent& event) {
    script_.length = event.last;
    switch (event.kind) {
      case Kind::Sent:
        script_.steps.push_back({.bytes = event.bytes, .times = event.times, .last = event.last, .stage = stage_});
        break;
      case Kind::Received:
        judgePace(event);
        add(event, {.kind = Deed::Kind::Bytes, .span = event.last - event.at, .bytes = event.bytes});
        break;
      case Kind::Gone:
        add(event, {.kind = Deed::Kind::Gone, .error = {event.why, event.text}});
        break;
      case Kind::Stop:
        add(event, {.kind = Deed::Kind::Stop});
        stoppedAt_ = event.at;
        break;
      default:
        takeHostsOwn(event);
    }
  }

 private:
  void add(const TraceEvent& event, Deed deed) {
    Step& step = script_.steps.back();
    deed.after = event.at - step.last;
    step.deeds.push_back(std::move(deed));
  }

  void judgePace(const TraceEvent& event) {
    const Step& step = script_.steps.back();
    if (step.bytes.size() < kLongFrame || !step.deeds.empty() || baud_ <= 0) return;
    const auto wireTime = static_cast<std::int64_t>(step.bytes.size()) * 9'000'000 / baud_;  // or longer
    ++answered_;
    early_ += (event.at - step.last).count() < wireTime ? 1 : 0;
  }

  void takeHostsOwn(const TraceEvent& event) {
    const bool failed = event.why != TraceEvent::Failure::None;
    const platform::PortError error{event.why, failed ? event.text : std::string()};
    if (event.kind == Kind::Open) {
      script_.openings.push_back(error);
      script_.devices.push_back(failed ? std::string() : event.text);
    }
    if (event.kind == Kind::Settings && failed) script_.refusedSettings[event.text] = {event.why, event.text};
    if (event.kind == Kind::Settings && !failed) baud_ = platform::wholeOf(event.text);
    if (event.kind == Kind::Stage) stage_ = event.text;
    if (event.kind == Kind::Thinned) script_.thinned = true;
    auto& deeds = script_.steps.back().deeds;
    if (event.kind == Kind::Close && !deeds.empty() && deeds.back().kind == Deed::Kind::Stop && event.at == stoppedAt_)
      deeds.back().closes = true;
  }

  Script& script_;
  std::string stage_;
  int baud_ = 0, answered_ = 0, early_ = 0;
  Micros stoppedAt_{-1};
};

}  // namespace

Script scriptOf(const engine::Trace& trace) {
  Script script;
  Writer writer(script);
  for (const TraceEvent& event : trace.events) writer.take(event);
  return script;
}

}  // namespace kvr::replay
