// What went over the line in a command's runs: frame by frame as they go (-v), and a file of each run (--trace).
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "cli/desk.h"
#include "engine/run_view.h"

namespace kvr::cli {

class Evidence {
 public:
  // A run, with the view that it is to tell what it does.
  using Run = std::function<engine::Outcome(engine::RunView& view)>;

  void declare(CLI::App& app);
  // Passed: a trace may be written; else it has been told why not.
  [[nodiscard]] ExitCode check(const Desk& desk) const;
  // Carries the run out; `more`: what its job has besides a chip's.
  engine::Outcome watch(const Desk& desk, engine::RunView& view, engine::RunKind kind, const engine::Job& job,
                        const engine::TraceFields& more, const Run& run) const;
  // Writes the trace of the last run, each to a file of its own. That it cannot be written is told and changes nothing.
  void keep(const Desk& desk);
  // Both.
  engine::Outcome conduct(const Desk& desk, engine::RunView& view, engine::RunKind kind, const engine::Job& job,
                          const engine::TraceFields& more, const Run& run);

 private:
  std::string nextPath(const Desk& desk);
  std::string path_;  // of the first trace; empty: none is wanted
  bool force_ = false;
  int number_ = 0;  // of the last one
};

Fields frameFields(const engine::TraceFrame& frame);

}  // namespace kvr::cli
