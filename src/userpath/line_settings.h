// The serial settings that four boxes stand for, and opening the port with them.
#pragma once

#include <string>

#include "engine/target_link.h"
#include "userpath/userpath_panel.h"

namespace kvr::userpath {

// "38400,E,8,1.5": baud, first letter of the parity, data bits, stop bits.
std::string settingsText(const LineBoxes& line);

// Closes the port, chooses the one of `combCommPort` and opens it with these settings. The status line tells why it
// could not be opened, also when the port knows no such settings.
platform::PortError openLine(engine::TargetLink& link, const std::string& settings);

// The two lines for the message pane after a port could not be opened.
void sayPortFailed(engine::TargetLink& link);

}  // namespace kvr::userpath
