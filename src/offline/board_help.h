// The guide to the off-line board that the tab's Help button shows.
#pragma once

#include <string>

namespace kvr::offline {

inline constexpr const char* kBoardHelpTitle = "Off-Line ISP-Programming board";

std::string boardHelpText();

}  // namespace kvr::offline
