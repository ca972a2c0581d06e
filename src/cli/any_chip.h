// A look at a chip of which nobody has said what it is.
#pragma once

#include "cli/desk.h"
#include "cli/evidence.h"
#include "cli/job_arguments.h"

namespace kvr::cli {

struct Look {
  engine::Job job;  // with the model of which the chip was called
  engine::Outcome outcome;
};

// A check job for a chip of that model, or of its kin.
engine::Job checkJob(const catalogue::McuRecord& model, const JobArguments& arguments);

// Calls the chip in the ways of all families in turns, until one call is answered or the command is stopped.
Look lookAtAnyChip(const Desk& desk, engine::RunView& view, const JobArguments& arguments, const Evidence& evidence);

}  // namespace kvr::cli
