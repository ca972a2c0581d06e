#include "benchmarks/download_floor.h"

#include <algorithm>
#include <cstddef>

namespace bench {
namespace {

// The receive event gathers for so long from the first waiting byte on, and again from the next byte after it.
constexpr sim::Micros kGather = 10 * sim::kMillisecond;

// What is left of the gathering when the answer's last byte has arrived.
double gatherMs(const sim::Unit& answer) {
  const auto count = static_cast<double>(answer.bytes.size());
  const double byte = static_cast<double>(answer.end - answer.start) / count;
  double arrived = 1;
  double handled = 0;
  while (arrived <= count) {
    handled = arrived * byte + static_cast<double>(kGather);
    arrived = static_cast<double>(static_cast<int>(handled / byte)) + 1;
  }
  return (handled - count * byte) / 1000;
}

// What the protocol prescribes besides, ahead of a frame with this command.
double pauseMs(int command) {
  switch (command) {
    case 0x8F:
      return 50 + 5;  // before a test of the new rate
    case 0x8E:
      return 50 + 50;  // before the change
    case 0x8D:
      return 1000 + 5;  // before the options, when the rate has changed
    default:
      return 0;
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

}  // namespace

Floor floorOf(const sim::Wire& wire, const sim::Chip& chip) {
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
      floor.hostMs += gatherMs(*before) + pauseMs(unit.bytes[5]);
    before = &unit;
  }
  if (before) floor.takenMs += static_cast<double>(before->end) / 1000;
  return floor;
}

}  // namespace bench
