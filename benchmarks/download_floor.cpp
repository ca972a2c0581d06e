#include "benchmarks/download_floor.h"

#include <algorithm>
#include <cstddef>

namespace bench {
namespace {

constexpr double kFullTurnRoundMs = 10;  // before all frames but data

// From an answer's last byte to a frame with this command.
double pauseMs(int command, double turnRoundMs) {
  switch (command) {
    case 0x00:
    case 0x30:
      return turnRoundMs;
    case 0x8F:
      return 50 + 5;  // before a test of the new rate
    case 0x8E:
      return 50 + 50;  // before the change
    case 0x8D:
      return 1000 + 5;  // before the options, when the rate has changed
    default:
      return kFullTurnRoundMs;
  }
}

double overlapMs(const sim::Chip& chip, sim::Micros from, sim::Micros to) {
  double sum = 0;
  for (const auto& stated : chip.journal().statedTimes()) {
    const auto start = std::max(stated.from, from);
    const auto end = std::min(stated.to, to);
    if (end > start) sum += static_cast<double>(end - start) / 1000;
  }
  return sum;
}

bool isFrame(const sim::Unit& unit) {
  return unit.bytes.size() > 5 && (unit.bytes[0] == 0x46 || unit.bytes[0] == 0xFE);
}

bool isDataFrame(const sim::Unit& unit) {
  return isFrame(unit) && unit.bytes.size() > 12 && (unit.bytes[5] == 0x00 || unit.bytes[5] == 0x30);
}

}  // namespace

Floor floorOf(const sim::Wire& wire, const sim::Chip& chip, double turnRoundMs) {
  Floor floor;
  const double turnaroundMs = static_cast<double>(sim::ChipTimes{}.turnaround) / 1000;
  const sim::Unit* before = nullptr;
  for (const auto& unit : wire.log()) {
    const bool answer = unit.direction == sim::Direction::deviceToHost;
    if (!before && !answer) continue;         // nobody has answered yet
    if (!answer && !isFrame(unit)) continue;  // sync bytes cross the answer on the other wire
    floor.wireMs += static_cast<double>(unit.end - unit.start) / 1000;
    if (!before)
      floor.takenMs = -static_cast<double>(unit.start) / 1000;
    else if (answer)
      floor.chipMs += overlapMs(chip, before->end, unit.start) + turnaroundMs;
    else
      floor.hostMs += pauseMs(unit.bytes[5], turnRoundMs);
    before = &unit;
  }
  if (before) floor.takenMs += static_cast<double>(before->end) / 1000;
  return floor;
}

DataTime dataTimeOf(const sim::Wire& wire) {
  DataTime data;
  const sim::Unit* first = nullptr;
  bool asked = false;
  for (const auto& unit : wire.log()) {
    const bool answer = unit.direction == sim::Direction::deviceToHost;
    if (answer ? !asked : !isDataFrame(unit)) {
      asked = false;
      continue;
    }
    if (!first) first = &unit;
    asked = !answer;
    data.wireMs += static_cast<double>(unit.end - unit.start) / 1000;
    data.takenMs = static_cast<double>(unit.end - first->start) / 1000;
  }
  return data;
}

}  // namespace bench
