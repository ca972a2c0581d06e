// kvr stations: several chips at once, each at a port and in a process of its own.
#pragma once

#include <memory>

#include "cli/command.h"

namespace kvr::cli {

std::unique_ptr<Command> makeStationsCommand();

}  // namespace kvr::cli
