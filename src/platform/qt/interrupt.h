#pragma once

#include <cstdint>

namespace kvr::platform {

// Asks a process of the user to end, as Ctrl-C does; one that is gone already is no fault.
void interruptProcess(std::int64_t id);

}  // namespace kvr::platform
