#include "cli/exit_code.h"

namespace kvr::cli {

ExitCode exitCodeOf(Cut cut) {
  switch (cut) {
    case Cut::None:
      break;
    case Cut::Timeout:
      return ExitCode::NoChip;
    case Cut::InputClosed:
    case Cut::HangUp:
      return ExitCode::HungUp;
    case Cut::Interrupt:
      return ExitCode::Interrupted;
    case Cut::OutputClosed:
      return ExitCode::OutputClosed;
    case Cut::Terminate:
      return ExitCode::Terminated;
  }
  return ExitCode::ChipFailed;
}

ExitCode exitCodeOf(const engine::Outcome& outcome, Cut cut) {
  if (outcome.ending == engine::Ending::Passed) return ExitCode::Passed;
  if (outcome.ending == engine::Ending::PassedInPart) return ExitCode::PassedInPart;
  if (outcome.ending == engine::Ending::Refused || outcome.books == engine::BooksFault::Refused)
    return ExitCode::Refused;
  if (outcome.books == engine::BooksFault::Unreachable) return ExitCode::Records;
  if (outcome.portLost) return ExitCode::Port;
  if (outcome.wrongModel) return ExitCode::OtherModel;
  return outcome.ending == engine::Ending::Stopped ? exitCodeOf(cut) : ExitCode::ChipFailed;
}

}  // namespace kvr::cli
