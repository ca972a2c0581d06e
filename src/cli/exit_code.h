// With which number the command ends. The numbers are part of its contract: scripts read them.
#pragma once

#include "engine/outcome.h"

namespace kvr::cli {

enum class ExitCode {
  Passed = 0,
  ChipFailed = 1,
  Differ = 1,  // two images that were compared
  WrongUse = 2,
  Port = 3,
  NoChip = 4,
  OtherModel = 5,
  File = 6,  // a file or a project
  Refused = 7,
  PassedInPart = 8,
  Records = 9,        // the record store cannot be reached, or not be written
  HungUp = 129,       // these four as a shell counts: 128 and the signal; also when standard input has ended
  Interrupted = 130,  // Ctrl-C
  OutputClosed = 141,
  Terminated = 143,
};

// What ended a run from outside.
enum class Cut { None, Timeout, HangUp, Interrupt, InputClosed, OutputClosed, Terminate };

ExitCode exitCodeOf(Cut cut);  // NoChip for a timeout
// A chip that has passed has passed, whatever came in its last moment.
ExitCode exitCodeOf(const engine::Outcome& outcome, Cut cut);

}  // namespace kvr::cli
