// What the far end of a line did in a recorded run, by what the host had sent until then.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/trace.h"

namespace kvr::replay {

using platform::Micros;

// Something that came over the line, or the wish of the user: `after` that long from the step's bytes on.
struct Deed {
  enum class Kind { Bytes, Gone, Stop };
  Kind kind = Kind::Bytes;
  Micros after{0};
  Micros span{0};  // of the bytes: from the first to the last, at an even pace
  std::vector<std::uint8_t> bytes;
  platform::PortError error;  // Gone
  bool closes = false;        // Stop: the port was closed with it
};

// Bytes that the host wrote, so many times in a row, and what happened after the last of them.
struct Step {
  std::vector<std::uint8_t> bytes;
  int times = 1;
  Micros last{0};     // when they were sent the last time
  std::string stage;  // in which the run was
  std::vector<Deed> deeds;
};

struct Script {
  std::vector<Step> steps;  // the first has no bytes: what happened before the host wrote anything
  std::vector<platform::PortError> openings;
  std::vector<std::string> devices;  // of the openings
  std::map<std::string, platform::PortError> refusedSettings;
  bool untimed = false;  // answers came before their questions can have left at their rate: a pseudo-terminal
  bool thinned = false;  // what went over the line is not all here
  Micros length{0};
};

Script scriptOf(const engine::Trace& trace);

}  // namespace kvr::replay
