// A batch of the record store, for a user and for a program.
#pragma once

#include <string>

#include "cli/value.h"
#include "records/batch.h"

namespace kvr::cli {

Fields batchFields(const records::Batch& batch);
std::string batchLine(const records::Batch& batch);   // for a list
std::string batchLines(const records::Batch& batch);  // everything that is known of it
// "12 of 100 done, 1 failed".
std::string stateText(const records::Batch& batch);

// A run of it: fields, and a line of CSV without its end.
Fields runFields(const records::RunRow& row);
std::string csvHeader();
std::string csvLine(const records::RunRow& row);

}  // namespace kvr::cli
