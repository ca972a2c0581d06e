// Project files of the older format: their header has no version, and their keys have other names.
#pragma once

#include <string>

#include "catalogue/family.h"
#include "project/project_text.h"

namespace kvr::project {

bool isOldProject(const Header& header);  // the first key is not "VER"

// The model that an old header names; empty when it names none.
std::string oldModelName(const Header& header);

// The rows of an old header that mean something today, under today's keys, in a fixed order; what the file does not
// hold is left out. Cedar had other options under the same keys than all other families.
Header convertOldProject(const Header& old, catalogue::OldOptionKeys keys);

}  // namespace kvr::project
