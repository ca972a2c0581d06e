// The job that a project file holds: what it says of a chip, without the window. Port, rates and the wanted frequency
// are the bench's, so no project keeps them.
#pragma once

#include "engine/job.h"
#include "project/project_file.h"

namespace kvr::project {

// `project.model` must be one of the catalogue's.
engine::Job jobOf(const ProjectFile& project);

}  // namespace kvr::project
