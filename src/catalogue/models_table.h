// The catalogue as a table for people: one line a row in table order after a header line, tab-separated, numbers
// decimal, flags 0 or 1. docs/models.tsv is this text.
#pragma once

#include <string>

namespace kvr::catalogue {

std::string modelsTable();

}  // namespace kvr::catalogue
