// What the Help buttons of the self-defined command's page and of the hardware page show.
#pragma once

#include <string>

namespace kvr::userpath {

inline constexpr const char* kTriggerHelpTitle = "Self-defined program command";
inline constexpr const char* kHardwareHelpTitle = "About ISP Hardware";

std::string triggerHelpText();
std::string hardwareHelpText();

}  // namespace kvr::userpath
