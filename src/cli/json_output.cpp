#include "cli/json_output.h"

#include <sstream>
#include <utility>

#include "cli/evidence.h"
#include "cli/outcome_text.h"

namespace kvr::cli {

void JsonOutput::put(std::string_view event, const Fields& fields) {
  Fields all = {{"version", kVersion},
                {"event", std::string(event)},
                {"time", std::chrono::duration<double>(loop_.now() - began_).count()}};
  all.insert(all.end(), fields.begin(), fields.end());
  streams_.out(write_(all) + "\n");
}

// One object a line of it; empty ones only part the messages on a page.
void JsonOutput::endLine() {
  std::istringstream lines(std::exchange(held_, {}));
  for (std::string line; !quiet_ && std::getline(lines, line);)
    if (!line.empty()) put("line", {{"text", line}});
}

void JsonOutput::say(std::string_view line) {
  endLine();
  held_ = line;
}

void JsonOutput::note(std::string_view line) {
  if (!quiet_) put("note", {{"text", std::string(line)}});
}

void JsonOutput::stage(const StageLine& line) {
  if (quiet_) return;
  const std::string stage = nameOf(line.stage);
  if (line.fraction >= 0)
    put("progress", {{"stage", stage}, {"fraction", line.fraction}, {"bytes", line.bytes}});
  else if (stage != lastStage_)
    put("stage", {{"stage", stage}});
  lastStage_ = stage;
}

// A message that waits for its end may wait on.
void JsonOutput::frame(const engine::TraceFrame& frame) {
  put("frame", frameFields(frame));
}

void JsonOutput::result(std::string_view event, const Fields& fields, std::string_view) {
  endLine();
  put(event, fields);
}

void JsonOutput::tile(std::size_t, const Fields& fields, std::string_view) {
  put("station", fields);
}

void JsonOutput::failure(ExitCode code, std::string_view why, std::string_view next) {
  endLine();
  put("failure",
      {{"exitCode", std::int64_t{static_cast<int>(code)}}, {"why", std::string(why)}, {"next", std::string(next)}});
  streams_.err("kvr: " + std::string(why) + "\n");
}

}  // namespace kvr::cli
