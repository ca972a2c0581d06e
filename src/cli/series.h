// One chip after the other with the same job: its serial numbers, the log, and the time in which the user changes the
// chip.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "cli/desk.h"
#include "cli/job_source.h"
#include "cli/run_console.h"
#include "cli/serial_numbers.h"
#include "engine/outcome.h"

namespace kvr::cli {

struct SeriesArguments {
  std::optional<int> count;
  bool forever = false;
  double delaySeconds = 4;
  std::string log;
  bool endWithInput = false;
  SerialArguments serial;

  void declare(CLI::App& app);
};

class Series {
 public:
  using Run = std::function<engine::Outcome(const engine::Job&)>;  // one chip
  Series(const Desk& desk, const SeriesArguments& arguments, JobSource& source, RunConsole& console, Numbering& numbers)
      : desk_(desk), arguments_(arguments), source_(source), console_(console), numbers_(numbers) {}

  // Ends after the last chip that was asked for or that there is a number for, or the first one that does not pass.
  // While there may be a number later, no chip is touched.
  [[nodiscard]] ExitCode program(const Run& run);

 private:
  std::optional<ExitCode> awaitRoom();
  std::optional<ExitCode> programOne(const Run& run);
  ExitCode writeLog(const engine::Outcome& outcome, ExitCode code);
  ExitCode changeChip();
  const Desk& desk_;
  const SeriesArguments& arguments_;
  JobSource& source_;
  RunConsole& console_;
  Numbering& numbers_;
  int passed_ = 0;
  ExitCode worst_ = ExitCode::Passed;
};

}  // namespace kvr::cli
