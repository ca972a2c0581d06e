// What a tile shows of one station, as a value.
#pragma once

#include <string>

#include "signs/sign.h"
#include "stations/event.h"

namespace kvr::stations {

struct Counts {
  int passed = 0, inPart = 0, failed = 0;
  bool operator==(const Counts&) const = default;
};

struct Tile {
  std::string name;
  std::string port;  // as the user knows it; empty: none chosen
  signs::Sign sign = signs::Sign::Ready;
  signs::Sign last = signs::Sign::Ready;  // the verdict of the chip before; not a verdict: none yet
  std::string words;                      // what it does, or what the user shall do
  double fraction = -1;                   // of the stage; below 0: not known
  std::string number;                     // of the chip in hand; empty: none
  std::string lastFailure;                // in a line; stays until the tile is cleared
  Counts counts;                          // since the window was opened
  double dataSeconds = 0;                 // of the last chip: while its data went out
  int failedInARow = 0;
  bool running = false;      // a process is there
  bool adapterGone = false;  // it waits for its adapter
  bool chipLeft = false;     // the batch was full: a chip is there as it was, until one answers again

  // Chips that failed one after the other, at which a station rests by itself: it is the fixture then.
  static constexpr int kFailuresToRest = 3;
};

// What the station's process tells.
void take(Tile& tile, const Event& event);

// How the process ended.
struct ProcessEnd {
  bool crashed = false;   // by a signal that it does not take
  int code = 0;           // what it ended with (docs/command.md), or the signal's number
  bool asked = false;     // it was asked to end
  std::string complaint;  // the last line of its standard error
};

enum class Follow { Rest, NextChip, WaitForAdapter };

// What the tile shows of it, and what follows. `handsFree`: another chip follows by itself on one that failed. After
// all else, but a port that does not open, a user has to look.
[[nodiscard]] Follow takeEnd(Tile& tile, const ProcessEnd& end, bool handsFree);

// The tile in a line of a terminal.
std::string lineOf(const Tile& tile);

}  // namespace kvr::stations
