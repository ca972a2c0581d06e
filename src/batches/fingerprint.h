// What makes the job of one bench that of another one.
#pragma once

#include "batches/chip_numbers.h"
#include "engine/job.h"
#include "records/batch.h"

namespace kvr::batches {

// Of a job whose images carry no running number yet.
records::Fingerprint fingerprintOf(const engine::Job& job, const Layout& layout);

}  // namespace kvr::batches
