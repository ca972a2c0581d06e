#pragma once

#include <string>

#include "cli/value.h"

namespace kvr::cli {

// The fields as one JSON object on one line.
std::string jsonText(const Fields& fields);

}  // namespace kvr::cli
