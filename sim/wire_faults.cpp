#include "sim/wire_faults.h"

#include <algorithm>
#include <cmath>

#include "sim/wire.h"

namespace sim {

namespace {

Micros roundedUp(double micros) {
  return static_cast<Micros>(std::ceil(micros - 1e-6));
}

}  // namespace

std::string describe(const Fault& fault) {
  static constexpr const char* kNames[] = {"lose",  "flip byte", "drop byte",    "send twice",
                                           "delay", "split at",  "noise before", "noise after"};
  std::string text = fault.direction == Direction::hostToDevice ? "host->device" : "device->host";
  text += " unit " + std::to_string(fault.unit) + ": " + kNames[static_cast<int>(fault.kind)];
  if (fault.kind == FaultKind::flip) text += " " + std::to_string(fault.byte) + " by " + std::to_string(fault.mask);
  if (fault.kind == FaultKind::dropByte || fault.kind == FaultKind::split) text += " " + std::to_string(fault.byte);
  if (fault.kind == FaultKind::delay || fault.kind == FaultKind::split)
    text += " by " + std::to_string(fault.micros / kMillisecond) + " ms";
  return text;
}

Micros timeOnWire(std::span<const Unit> log, Micros from, Micros to) {
  std::vector<std::pair<Micros, Micros>> spans;
  for (const Unit& unit : log) spans.emplace_back(std::max(unit.start, from), std::min(unit.end, to));
  std::sort(spans.begin(), spans.end());
  Micros total = 0, reached = from;
  for (const auto& [start, end] : spans) {
    if (end <= std::max(start, reached)) continue;
    total += end - std::max(start, reached);
    reached = end;
  }
  return total;
}

const Fault* Wire::plannedFault(Direction direction, int unit) const {
  const auto hit = std::find_if(config_.faults.begin(), config_.faults.end(),
                                [&](const Fault& fault) { return fault.direction == direction && fault.unit == unit; });
  return hit == config_.faults.end() ? nullptr : &*hit;
}

std::optional<Fault> Wire::chooseFault(Direction direction, int unit, std::size_t size, Micros start) {
  if (const Fault* planned = plannedFault(direction, unit)) return *planned;
  if (!config_.random || static_cast<int>(size) < config_.random->minimumBytes) return std::nullopt;
  const RandomFaults& random = *config_.random;
  const double draw = std::uniform_real_distribution<>(0, 1)(rng_);
  if (draw >= random.chance || exchange_ <= lastFaultyExchange_ || start <= quietUntil_ || random.kinds.empty())
    return std::nullopt;
  Fault fault{direction, unit, random.kinds[static_cast<std::size_t>(rng_() % random.kinds.size())]};
  fault.byte = static_cast<int>(rng_() % size);
  fault.mask = static_cast<std::uint8_t>(1 + rng_() % 255);
  fault.micros = 1 + static_cast<Micros>(rng_() % static_cast<std::uint64_t>(random.longestDelay));
  const bool reachesOn =
      fault.kind == FaultKind::delay || fault.kind == FaultKind::twice || fault.kind == FaultKind::split;
  lastFaultyExchange_ = exchange_ + (reachesOn ? 1 : 0);
  return fault;
}

Wire::Burst Wire::layOut(std::span<const std::uint8_t> bytes, const Line& line, double start,
                         const std::optional<Fault>& fault) {
  const auto is = [&](FaultKind kind) { return fault && fault->kind == kind; };
  Burst burst{line, {}, 0, start};
  double at = start;
  const auto put = [&](std::uint8_t byte, std::uint8_t meant, Damage damage) {
    at += byteTime(line);
    burst.items.push_back({roundedUp(at), byte, meant, damage});
  };
  if (is(FaultKind::delay)) at += static_cast<double>(fault->micros);
  if (is(FaultKind::noiseBefore))
    for (int i = 0; i < fault->byte; ++i) put(static_cast<std::uint8_t>(rng_()), 0, Damage::byWire);
  Damage damage = Damage::none;  // a hole in a frame taints all that follows it
  for (int copy = 0; copy < (is(FaultKind::twice) ? 2 : 1) && !is(FaultKind::lose); ++copy) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const bool here = fault && static_cast<int>(i) == fault->byte;
      if (here && (is(FaultKind::dropByte) || is(FaultKind::split))) damage = Damage::byWire;
      if (here && is(FaultKind::dropByte)) continue;
      if (here && is(FaultKind::split)) at += static_cast<double>(fault->micros);
      const bool flipped = here && is(FaultKind::flip);
      put(flipped ? bytes[i] ^ fault->mask : bytes[i], bytes[i], flipped ? Damage::byWire : damage);
    }
    if (is(FaultKind::twice)) damage = Damage::byWire;
  }
  if (is(FaultKind::noiseAfter))
    for (int i = 0; i < fault->byte; ++i) put(static_cast<std::uint8_t>(rng_()), 0, Damage::byWire);
  return burst;
}

Micros Wire::carry(Direction direction, std::span<const std::uint8_t> bytes, const Line& line, Micros from) {
  Lane& lane = direction == Direction::hostToDevice ? toDevice_ : toHost_;
  if (direction == Direction::hostToDevice) ++exchange_;
  const double start = std::max(static_cast<double>(from), lane.freeAt);
  const int unit = lane.units++;
  const auto fault = chooseFault(direction, unit, bytes.size(), static_cast<Micros>(start));
  Burst burst = layOut(bytes, line, start, fault);
  const double trueEnd = start + byteTime(line) * static_cast<double>(bytes.size());
  lane.freeAt = burst.items.empty() ? trueEnd : std::max(trueEnd, static_cast<double>(burst.items.back().end));
  if (!fault && !burst.items.empty()) lane.freeAt = trueEnd;
  if (config_.keepLog)
    log_.push_back({direction,
                    unit,
                    static_cast<Micros>(start),
                    roundedUp(trueEnd),
                    line,
                    {bytes.begin(), bytes.end()},
                    fault.has_value()});
  if (!burst.items.empty()) lane.bursts.push_back(std::move(burst));
  if (fault && device_)
    device_->disturbed(quietUntil_ = std::max(quietUntil_, roundedUp(std::max(trueEnd, lane.freeAt))));
  return roundedUp(trueEnd);
}

}  // namespace sim
