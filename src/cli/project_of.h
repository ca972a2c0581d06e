// The project file of a job: what the window would save after the same choices.
#pragma once

#include <vector>

#include "cli/job_source.h"
#include "images/auto_increment.h"

namespace kvr::cli {

// Of a job made from a project: that project, with what the arguments have changed.
project::ProjectFile projectOf(const JobSource& source, const JobArguments& arguments,
                               const std::vector<images::AutoIncrement>& counters, const platform::FileSystem& files);

}  // namespace kvr::cli
