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
  SerialArguments serial;

  void declare(CLI::App& app);
};

class Series {
 public:
  using Run = std::function<engine::Outcome(const engine::Job&)>;  // one chip
  Series(const Desk& desk, const SeriesArguments& arguments, JobSource& source, RunConsole& console)
      : desk_(desk), arguments_(arguments), source_(source), console_(console) {}

  // Ends after the last chip that was asked for, or the first one that does not pass. `yes`: the numbers of a project
  // are the right ones.
  [[nodiscard]] ExitCode program(bool yes, const Run& run);

 private:
  ExitCode programOne(const Run& run);
  ExitCode writeLog(const engine::Outcome& outcome, ExitCode code);
  ExitCode changeChip();
  void tellNumber();
  const Desk& desk_;
  const SeriesArguments& arguments_;
  JobSource& source_;
  RunConsole& console_;
  SerialNumbers numbers_;
};

}  // namespace kvr::cli
