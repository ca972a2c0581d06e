// The runs that are recorded. Each is a program of its own that nothing has touched yet; its name seeds its choices.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/recorder/record.h"

namespace kvr::recorder {

struct Run {
  std::string name;
  std::function<Record(const std::string& name)> play;
};

std::vector<Run> allRuns();

}  // namespace kvr::recorder
