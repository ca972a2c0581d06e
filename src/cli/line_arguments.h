// The arguments of every command that talks to a device: which port, and for how long it waits.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "cli/desk.h"
#include "cli/run_console.h"

namespace kvr::cli {

class LineArguments {
 public:
  void declare(CLI::App& app);
  // Finds the port and makes it the one that is opened. Passed: it is there; else why not has been told.
  [[nodiscard]] ExitCode take(const Desk& desk) const;
  std::string device(const Desk& desk) const { return choosePort(port_, desk.ports).device; }
  // Ends the run when nothing answers for too long.
  void limit(const Desk& desk, RunConsole& console) const;

 private:
  std::string port_;
  double timeoutSeconds_ = 0;
};

}  // namespace kvr::cli
