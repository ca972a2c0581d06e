// The guide that the Help button of the terminal's page shows in the receive pane.
#pragma once

#include <string_view>

namespace kvr::comtool {

std::string_view toolGuide();

}  // namespace kvr::comtool
