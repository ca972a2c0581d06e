#include "monitor/list_rows.h"

#include "platform/text.h"

namespace kvr::monitor {

namespace {

constexpr std::size_t kValueColumn = 17;
constexpr std::size_t kRowWidth = 28;
constexpr std::size_t kFirstCell = 5;
constexpr std::size_t kCellWidth = 3;
constexpr std::size_t kRamSize = 256;

}  // namespace

std::string registerRow(const NamedRegister& named) {
  return platform::hexText(named.address, 2) + "H  " + std::string(named.name);
}

std::string withValue(std::string row, std::uint8_t value) {
  row.resize(kValueColumn, ' ');
  return row + platform::hexText(value, 2) + "H  " + platform::padLeft(std::to_string(value), 3, ' ');
}

std::string valueOf(const std::string& row) {
  return row.size() > kValueColumn ? row.substr(kValueColumn) : "";
}

std::vector<std::string> ramRows() {
  std::vector<std::string> rows;
  for (std::uint32_t address = 0; address < kRamSize; address += kCellsPerRow)
    rows.push_back(platform::hexText(address, 2) + "H ");
  return rows;
}

std::vector<std::string> xdataRows(std::uint32_t address, std::size_t count) {
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < count; ++i, address += kCellsPerRow) rows.push_back(platform::hexText(address, 4) + " ");
  return rows;
}

std::string withCells(std::string row, std::span<const Cell> cells) {
  row.resize(kRowWidth, ' ');
  for (std::size_t k = 0; k < kCellsPerRow && k < cells.size(); ++k)
    if (cells[k] < kUnknown) row.replace(kFirstCell + k * kCellWidth, 2, platform::hexText(cells[k], 2));
  return row;
}

}  // namespace kvr::monitor
