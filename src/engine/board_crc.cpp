#include "engine/board_crc.h"

#include <array>

namespace kvr::engine {
namespace {

constexpr std::array<std::uint16_t, 256> makeTable() {
  std::array<std::uint16_t, 256> table{};
  for (unsigned i = 0; i < table.size(); ++i) {
    unsigned crc = i;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) ? (crc >> 1) ^ 0xA001 : crc >> 1;
    table[i] = static_cast<std::uint16_t>(crc);
  }
  return table;
}
constexpr auto kTable = makeTable();

}  // namespace

std::uint16_t boardCrc(std::span<const std::uint8_t> bytes, std::uint16_t start) {
  std::uint16_t crc = start;
  for (const std::uint8_t byte : bytes) crc = static_cast<std::uint16_t>((crc >> 8) ^ kTable[(crc ^ byte) & 0xFF]);
  return crc;
}

}  // namespace kvr::engine
