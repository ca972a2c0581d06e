// The shortest time that a recorded download could have taken, read from the far end's own log.
#pragma once

#include <string>

#include "sim/chip.h"
#include "sim/wire.h"

namespace bench {

struct Floor {
  double wireMs = 0;  // every byte, both ways
  double chipMs = 0;  // flash work and the chip's own waits, where the host had to wait for them
  double hostMs = 0;  // turn-rounds, and the waits that the protocol prescribes to the host between two frames
  double totalMs() const { return wireMs + chipMs + hostMs; }
  double takenMs = 0;  // from the chip's first answer to the last frame
};

// For the later session (families 5 to 11) with first contact at 9600: the prescribed waits are those of that path.
Floor floorOf(const sim::Wire& wire, const sim::Chip& chip, double turnRoundMs);

// The data alone, from the first frame to the last answer.
struct DataTime {
  double wireMs = 0;  // the bare bytes, both ways
  double takenMs = 0;
};
DataTime dataTimeOf(const sim::Wire& wire);

}  // namespace bench
