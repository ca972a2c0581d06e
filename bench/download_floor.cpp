#include "bench/download_floor.h"

#include <algorithm>
#include <cstddef>

namespace bench {
namespace {

constexpr double kGatherMs = 10;  // at the head of every receive event

// What lies between the last byte of an answer and the frame that follows, by the frame's command.
double prescribedMs(int command) {
  switch (command) {
    case 0x8F: return kGatherMs + 50 + 5;           // before a test of the new rate
    case 0x8E: return kGatherMs + 50 + 50;          // before the change
    case 0x8D: return kGatherMs + 1000 + 5;         // before the options, when the rate has changed
    default: return kGatherMs;
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

}  // namespace

Floor floorOf(const sim::Wire& wire, const sim::Chip& chip) {
  const auto& log = wire.log();
  std::size_t first = 0;
  while (first < log.size() && log[first].direction != sim::Direction::deviceToHost) ++first;
  Floor floor;
  if (first == log.size()) return floor;
  const double turnaroundMs = static_cast<double>(sim::ChipTimes{}.turnaround) / 1000;
  for (std::size_t i = first; i < log.size(); ++i) {
    floor.wireMs += static_cast<double>(log[i].end - log[i].start) / 1000;
    if (i == first) continue;
    if (log[i].direction == sim::Direction::hostToDevice)
      floor.hostMs += prescribedMs(log[i].bytes.size() > 5 ? log[i].bytes[5] : 0);
    else
      floor.chipMs += overlapMs(chip, log[i - 1].end, log[i].start) + turnaroundMs;
  }
  floor.takenMs = static_cast<double>(log.back().end - log[first].start) / 1000;
  return floor;
}

}  // namespace bench
