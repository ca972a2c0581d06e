// Where a command tells what it does and what has come of it. The messages of a run go to standard error as they come,
// results to standard output; with --json every one of them is an object of its own on standard output.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/exit_code.h"
#include "cli/value.h"
#include "engine/run_view.h"
#include "engine/trace_frames.h"

namespace kvr::cli {

// What a step of a run looks like from outside, for the line that shows how far it is.
struct StageLine {
  engine::Stage stage = engine::Stage::Prepare;
  double seconds = 0;    // since the stage began
  double fraction = -1;  // of the stage that is done, 0 to 1; below 0: nobody knows
  double bytes = 0;      // sent in this stage
  double limit = 0;      // seconds after which the wait for a chip ends; 0: never
};

class Output {
 public:
  virtual ~Output() = default;
  // The messages of a run: a new line, and more to the end of it.
  virtual void say(std::string_view line) = 0;
  virtual void append(std::string_view text) = 0;
  virtual void note(std::string_view line) = 0;  // a message of the command itself
  virtual void stage(const StageLine& line) = 0;
  virtual void frame(const engine::TraceFrame& frame) = 0;  // that has gone over the line
  // A result: `text` (whole lines) for a reader, or `fields` under the name `event` for a program.
  virtual void result(std::string_view event, const Fields& fields, std::string_view text) = 0;
  // A station has changed, and all of them as they are now, a line each.
  virtual void tile(std::size_t index, const Fields& fields, std::string_view line) = 0;
  virtual void tiles(const std::vector<std::string>& lines) = 0;
  // Why the command ends with `code`, and what to do next (empty: nothing to add).
  virtual void failure(ExitCode code, std::string_view why, std::string_view next) = 0;
};

}  // namespace kvr::cli
