// The frames that only an off-line board gets. All carry the CRC of engine/board_crc.h, low byte first.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace kvr::offline {

// Sent once at even parity before the conversation: a board that sits in a sorting machine leaves its waiting there.
inline constexpr std::array<std::uint8_t, 21> kWakeFrame{0x46, 0xB9, 0x6A, 0x00, 0x13, 0xF0, 0x01,
                                                         0x04, 0x00, 0x02, 0x03, 0x04, 0x05, 0x06,
                                                         0x07, 0x08, 0x01, 0x95, 0x7F, 0x07, 0x16};

// Data for the board's memory at an address of 16 bits. `retried`: the page is being sent anew.
std::vector<std::uint8_t> buildBoardWriteFrame(std::span<const std::uint8_t> data, int address, bool retried);

}  // namespace kvr::offline
