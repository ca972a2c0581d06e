// What a wire can do to the units that it carries. A unit is what one write of the host, or one utterance of the
// device, put on the line; units are counted from 0 in each direction.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/device.h"

namespace sim {

enum class Direction { hostToDevice, deviceToHost };

enum class FaultKind {
  lose,         // the unit never arrives
  flip,         // byte `byte` is changed by XOR with `mask`
  dropByte,     // byte `byte` is missing
  twice,        // the unit arrives twice in a row
  delay,        // the unit comes `micros` later
  split,        // a gap of `micros` in front of byte `byte`
  noiseBefore,  // `byte` random bytes in front of the unit
  noiseAfter,   // the same after it
};

struct Fault {
  Direction direction = Direction::hostToDevice;
  int unit = 0;
  FaultKind kind = FaultKind::lose;
  int byte = 0;
  std::uint8_t mask = 1;
  Micros micros = 0;
};

std::string describe(const Fault& fault);

// Faults on a seed: each unit of at least `minimumBytes` bytes is hit with the given chance, but never two units of one
// exchange (a unit of the host and all the device's answers up to the host's next one), nor of the exchange right
// after a delay, into which the late bytes reach.
struct RandomFaults {
  double chance = 0.01;
  int minimumBytes = 3;
  Micros longestDelay = 3 * kSecond;
  std::vector<FaultKind> kinds = {FaultKind::lose,  FaultKind::flip,  FaultKind::dropByte,
                                  FaultKind::twice, FaultKind::delay, FaultKind::split};
};

// One unit as it went out, before any fault.
struct Unit {
  Direction direction = Direction::hostToDevice;
  int index = 0;     // counted in its direction
  Micros start = 0;  // its first bit
  Micros end = 0;    // its last bit
  Line line;
  std::vector<std::uint8_t> bytes;
  bool faulted = false;
};

// How long the line carried something between the two times, in either direction: units that overlap count once.
Micros timeOnWire(std::span<const Unit> log, Micros from, Micros to);

}  // namespace sim
