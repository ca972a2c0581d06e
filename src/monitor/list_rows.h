// The rows of the monitor's lists as texts.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "monitor/dump_record.h"
#include "monitor/register_tables.h"

namespace kvr::monitor {

inline constexpr std::size_t kCellsPerRow = 8;

// "E0H  ACC"
std::string registerRow(const NamedRegister& named);
// The row with the value after its first 17 characters: "E0H  ACC         1FH   31".
std::string withValue(std::string row, std::uint8_t value);
// What follows the first 17 characters.
std::string valueOf(const std::string& row);

// "00H ", "08H ", ...: internal memory.
std::vector<std::string> ramRows();
// "0000 ", "0008 ", ...: `count` rows of external memory from an address on.
std::vector<std::string> xdataRows(std::uint32_t address, std::size_t count);
// The row with the known cells of eight as two digits each, 28 characters in all; an unknown cell keeps what was
// there.
std::string withCells(std::string row, std::span<const Cell> cells);

}  // namespace kvr::monitor
