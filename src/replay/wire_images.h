// The images of a job, as far as they went over the wire.
#pragma once

#include "engine/job.h"
#include "engine/trace.h"

namespace kvr::replay {

// Puts the bytes of all data frames that the host sent, those of chips and those of demo routines, where they belong.
// What the trace says of bytes that were left out gets bytes of its own, so that as many are left out again.
void fillImages(engine::Job& job, const engine::Trace& trace);

}  // namespace kvr::replay
