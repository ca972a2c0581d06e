// How a run ended, for a user and for a program.
#pragma once

#include "cli/desk.h"
#include "cli/run_console.h"
#include "engine/job.h"

namespace kvr::cli {

// "Program", "Wait", ... in small letters, as JSON has it.
std::string nameOf(engine::Stage stage);
Fields outcomeFields(const engine::Outcome& outcome, const engine::Job& job, const std::string& serial, ExitCode code);
// Tells it; gives the code with which the command ends. `serial`: the number that the chip was to carry.
[[nodiscard]] ExitCode tellOutcome(const Desk& desk, RunConsole& console, const engine::Job& job,
                                   const engine::Outcome& outcome, const std::string& serial = {});

}  // namespace kvr::cli
