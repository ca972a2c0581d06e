// What makes the job of one bench that of another one.
#pragma once

#include "batches/chip_numbers.h"
#include "engine/job.h"
#include "records/batch.h"

namespace kvr::batches {

// What the images hold where the running numbers will be does not count.
records::Fingerprint fingerprintOf(const engine::Job& job, const Layout& layout);

}  // namespace kvr::batches
