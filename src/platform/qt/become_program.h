#pragma once

#include <span>
#include <string>

namespace kvr::platform {

// Replaces this process by the program, with these arguments after its name. Returns only when the program cannot be
// started, or the system knows no such call.
void becomeProgram(std::string program, std::span<char* const> arguments);

}  // namespace kvr::platform
