// A job as the head of a trace has it: all but the bytes of its images.
#pragma once

#include <optional>

#include "engine/job.h"
#include "engine/trace.h"

namespace kvr::engine {

TraceFields jobFields(const Job& job);

// The job of a trace. Its images have the right ranges and sizes and hold nothing but the fill: their bytes must come
// from elsewhere. Nothing: the catalogue has no such model, or what makes a job is missing.
std::optional<Job> jobOf(const Trace& trace);

}  // namespace kvr::engine
