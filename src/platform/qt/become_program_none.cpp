#include "platform/qt/become_program.h"

namespace kvr::platform {

void becomeProgram(std::string, std::span<char* const>) {}

}  // namespace kvr::platform
