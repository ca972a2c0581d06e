#include "stations/tile.h"

#include <array>

namespace kvr::stations {
namespace {

using signs::Sign;

// What kvr ends with.
constexpr int kPassed = 0, kChipFailed = 1, kPort = 3, kOtherModel = 5, kRefused = 7, kPassedInPart = 8;

struct StageWords {
  const char* stage;
  const char* words;
};
constexpr std::array<StageWords, 7> kStages{{{"identify", "A chip has answered"},
                                             {"baud", "Looking for the fastest rate"},
                                             {"erase", "Erasing"},
                                             {"program", "Programming"},
                                             {"finish", "Finishing"},
                                             {"options", "Writing the options"},
                                             {"report", "Reading the options back"}}};

void enter(Tile& tile, const std::string& stage) {
  tile.fraction = -1;
  for (const StageWords& known : kStages) {
    if (stage != known.stage) continue;
    tile.sign = Sign::Working;
    tile.chipLeft = false;
    tile.words = known.words;
    return;
  }
  if (tile.sign == Sign::Waiting) return;
  if (signs::isVerdict(tile.sign)) tile.last = tile.sign;
  tile.sign = Sign::Waiting;
  tile.words = "Switch the next chip on";
  tile.number.clear();
}

// Nothing is wrong: there is no chip to program, or none until one of another station fails.
void fill(Tile& tile, const Event& event) {
  if (signs::isVerdict(tile.sign)) tile.last = tile.sign;
  tile.sign = Sign::BatchFull;
  tile.words = event.taken;
  tile.fraction = -1;
  tile.number.clear();
  tile.chipLeft = tile.chipLeft || event.chipLeft;
}

void pass(Tile& tile, Sign sign) {
  tile.sign = sign;
  ++(sign == Sign::Pass ? tile.counts.passed : tile.counts.inPart);
  tile.failedInARow = 0;
  tile.words = "Change the chip";
}

void fail(Tile& tile, const std::string& why) {
  tile.sign = Sign::Fail;
  tile.words = why;
  tile.lastFailure = why;
}

// A run that a chip has not answered to says nothing of any chip.
void takeOutcome(Tile& tile, const Event& event) {
  if (tile.sign == Sign::BatchFull) return;  // of the chip that was left as it was
  tile.fraction = -1;
  tile.dataSeconds = event.dataSeconds;
  if (!event.number.empty()) tile.number = event.number;
  if (event.ending == "passed") return pass(tile, Sign::Pass);
  if (event.ending == "passed-in-part") return pass(tile, Sign::PassInPart);
  if (!event.answered && (event.ending == "stopped" || event.exitCode == kPort)) {
    tile.sign = Sign::Ready;
    tile.words.clear();
    return;
  }
  fail(tile, event.why);
  if (!event.answered || event.ending == "refused") return;  // that chip is as it was
  ++tile.counts.failed;
  ++tile.failedInARow;
}

std::string textOf(const ProcessEnd& end) {
  if (end.crashed) return "The station's process broke down (signal " + std::to_string(end.code) + ").";
  return end.complaint.empty() ? "The station has ended with code " + std::to_string(end.code) + "." : end.complaint;
}

}  // namespace

void take(Tile& tile, const Event& event) {
  if (event.name == "stage") return enter(tile, event.stage);
  if (event.name == "progress") {
    enter(tile, event.stage);
    tile.fraction = event.fraction;
  }
  if (event.name == "full") return fill(tile, event);
  if (event.name == "number") tile.number = event.number;
  if (event.name == "outcome") return takeOutcome(tile, event);
  // It comes after the outcome and says more; a stop between two chips leaves the last verdict as it is.
  if (event.name == "failure" && tile.sign == Sign::Fail) tile.words = tile.lastFailure = event.why;
}

Follow takeEnd(Tile& tile, const ProcessEnd& end, bool handsFree) {
  const bool chipInHand = tile.sign == Sign::Working;
  tile.running = false;
  tile.fraction = -1;
  const bool portLost = !end.crashed && end.code == kPort;
  const bool complete = !end.crashed && (end.code == kPassed || end.code == kPassedInPart);
  const bool chipFailed = !end.crashed && (end.code == kChipFailed || end.code == kOtherModel);
  const bool turnedAway = !end.crashed && end.code == kRefused;
  if (chipInHand) {  // the chip has got an unknown part
    fail(tile, textOf(end) + " The chip in hand is not good.");
    ++tile.counts.failed;
  } else if (tile.sign == Sign::BatchFull && (complete || turnedAway) && !end.asked) {
    return Follow::Rest;
  } else if (!end.asked && !portLost && !chipFailed && !complete) {
    fail(tile, tile.sign == Sign::Fail ? tile.lastFailure : textOf(end));
  } else if (tile.sign == Sign::Waiting || tile.sign == Sign::BatchFull) {
    tile.sign = Sign::Ready;
    tile.words.clear();
  }
  if (end.asked) return Follow::Rest;
  if (portLost) {
    tile.words = end.complaint;
    return Follow::WaitForAdapter;
  }
  if (!chipFailed || !handsFree) return Follow::Rest;
  if (tile.failedInARow < Tile::kFailuresToRest) return Follow::NextChip;
  tile.words =
      std::to_string(tile.failedInARow) + " chips in a row have failed. Look at the fixture, then start again.";
  return Follow::Rest;
}

std::string lineOf(const Tile& tile) {
  std::string line = tile.name + "  " + (tile.port.empty() ? "no port" : tile.port) + "  " + signs::wordOf(tile.sign);
  if (tile.fraction >= 0) line += " " + std::to_string(static_cast<int>(tile.fraction * 100)) + " %";
  if (!tile.number.empty()) line += "  number " + tile.number;
  line += "  " + std::to_string(tile.counts.passed) + " passed";
  if (tile.counts.inPart > 0) line += ", " + std::to_string(tile.counts.inPart) + " in part";
  line += ", " + std::to_string(tile.counts.failed) + " failed";
  if (!tile.words.empty()) line += "  " + tile.words;
  return line;
}

}  // namespace kvr::stations
