// One line of what `kvr --json` tells, as a value (docs/command.md).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kvr::stations {

struct Event {
  std::string name;        // "stage", "progress", "outcome", ...
  std::string stage;       // of a stage or a progress
  double fraction = 0;     // of a progress: how much of the stage is done, 0 to 1
  std::string ending;      // of an outcome: "passed", ...
  int exitCode = 0;        // of an outcome or a failure (docs/command.md)
  std::string why;         // of an outcome or a failure
  std::string next;        // of a failure: what to do
  std::string number;      // that the chip in hand carries, or was to carry; empty: none
  double dataSeconds = 0;  // of an outcome: while the data went out
  bool answered = false;   // of an outcome: a chip has answered
  std::string taken;       // of a batch that is full: how full
  bool chipLeft = false;   // of a batch that is full: a chip has answered, and is as it was
};

// Nothing: the line is not an object of a version that is known. Properties that are not there read empty.
std::optional<Event> readEvent(std::string_view line);

}  // namespace kvr::stations
