// CRC-16/MODBUS: polynomial 8005h reflected, start value FFFFh, no final change. The off-line board's frames and its
// memory image carry it low byte first.
#pragma once

#include <cstdint>
#include <span>

namespace kvr::engine {

std::uint16_t boardCrc(std::span<const std::uint8_t> bytes, std::uint16_t start = 0xFFFF);

}  // namespace kvr::engine
