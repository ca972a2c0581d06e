#include "engine/run_tracer.h"

#include <array>

#include "engine/trace_job.h"
#include "engine/tracing_view.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

using platform::hexText;

void addChip(TraceFields& head, const ChipSeen& chip) {
  head.push_back({"chip", chip.model.empty() ? chip.code : chip.model});
  head.push_back({"firmware", chip.firmware});
  head.push_back({"clock", platform::numberText(chip.clockHz)});
}

TraceFields endFields(const Outcome& outcome) {
  TraceFields fields = {
      {"ending", endingText(outcome.ending)}, {"stage", stageText(outcome.stage)}, {"words", outcome.words}};
  if (outcome.chip) addChip(fields, *outcome.chip);
  if (outcome.baud > 0) fields.push_back({"baud", std::to_string(outcome.baud)});
  if (outcome.bytesLeftOut > 0)
    fields.push_back({"left out", std::to_string(outcome.bytesLeftOut) + " from " +
                                      hexText(static_cast<std::uint32_t>(outcome.leftOutFrom), 4)});
  return fields;
}

}  // namespace

std::string kindText(RunKind kind) {
  constexpr std::array kNames = {"chip", "board", "demo", "trigger", "check"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string endingText(Ending ending) {
  constexpr std::array kNames = {"refused", "failed", "stopped", "passed", "passed in part"};
  return kNames[static_cast<std::size_t>(ending)];
}

std::string stageText(Stage stage) {
  constexpr std::array kNames = {"prepare", "wait",   "identify", "baud",  "erase",
                                 "program", "finish", "options",  "report"};
  return kNames[static_cast<std::size_t>(stage)];
}

void RunTracer::begin(RunKind kind, const Job& job, const TraceFields& more) {
  head_ = {{"run", kindText(kind)}, {"began", clock_.dateTime().substr(0, 11) + clock_.timeOfDayMillis()}};
  for (const TraceFields& fields : {jobFields(job), more}) head_.insert(head_.end(), fields.begin(), fields.end());
  recorder_.begin();
}

void RunTracer::end(const Outcome& outcome) {
  if (!recorder_.on()) return forget();
  recorder_.end();
  for (TraceField& field : endFields(outcome)) head_.push_back(std::move(field));
}

void RunTracer::forget() {
  recorder_.begin();
  recorder_.end();
  head_.clear();
}

Trace RunTracer::trace() const {
  return hasTrace() ? Trace{head_, recorder_.events()} : Trace{};
}

}  // namespace kvr::engine
