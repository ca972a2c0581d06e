// The running numbers of a batch in the images of a chip: where they lie, as the batch keeps it, and their bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/job.h"
#include "images/auto_increment.h"
#include "records/batch.h"

namespace kvr::batches {

// Fields of an image without their values. One of the code and one of the data at most.
using Layout = std::vector<images::AutoIncrement>;

// "code 1FFF 4 hex; data 0010 2 bcd": address of the last byte, bytes, radix.
std::string layoutText(const Layout& layout);
Layout layoutOf(const std::string& text);
// The batch's counters for these fields: `next` is the first chip's number.
std::vector<records::Counter> countersOf(const Layout& layout);

// Writes the numbers, one for each field, into the images. Why not, in words; empty: they are there.
[[nodiscard]] std::string writeNumbers(engine::Job& job, const Layout& layout,
                                       const std::vector<std::int64_t>& numbers);

}  // namespace kvr::batches
