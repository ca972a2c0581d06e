// A command in hexadecimal, as the user types it: two characters a byte, any blanks between bytes.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/target_link.h"

namespace kvr::userpath {

// Two characters make one byte; a single one at a blank or at the end ("1 ") does, too. A pair that begins with a
// character below "0" (a comma, a point) is passed over. What is no hexadecimal digit ends the pair's number; without
// one it is 0.
std::vector<std::uint8_t> parseUserBytes(std::string_view text);

// Sends the bytes through the open port: waits until nothing is left from before, writes, and waits until the last stop
// bit has gone out, or Stop. Nothing happens when the port is closed or the text holds no byte.
void sendUserBytes(engine::TargetLink& link, std::string_view text);

}  // namespace kvr::userpath
