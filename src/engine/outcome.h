// How a run ended. Verdict sign, counter, batch log, beep and serial numbers hang on this value alone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "options/option_set.h"
#include "platform/event_loop.h"

namespace kvr::engine {

enum class RunKind { Chip, Board, Demo, Trigger, Check };

// Where a run is, or where it ended.
enum class Stage { Prepare, Wait, Identify, Baud, Erase, Program, Finish, Options, Report };
inline constexpr std::size_t kStages = 9;

enum class Ending {
  Refused,       // could not start: nothing was sent, or the batch did not take the chip, which is as it was
  Failed,        // `words` says why
  Stopped,       // by the user
  Passed,        // everything went through
  PassedInPart,  // everything that fits went through; bytes of the image were left out
};

using StageTimes = std::array<platform::Micros, kStages>;

// A rest that the protocol prescribes, worth telling: longer than 50 ms.
struct Rest {
  static constexpr platform::Millis kTold{50};
  Stage stage = Stage::Prepare;
  platform::Micros length{};
  std::string_view why;  // of a text that lasts
};

// What the chip told of itself. Empty texts: it did not.
struct ChipSeen {
  std::string model;      // of its code; empty: unknown
  std::string code;       // two or four hexadecimal digits
  std::string firmware;   // "6.3I": version and letter
  std::string factoryId;  // 14 hexadecimal digits
  double clockHz = 0;
  options::OptionBytes optionsBefore{};  // as first told
  options::OptionBytes optionsAfter{};   // as last told
  std::optional<options::RcTrim> trim;   // measured registers of the internal oscillator
};

// What went wrong on the way and was mended, or ended the run.
enum class Setback {
  BlockAgain,   // a block of data went unanswered or was answered wrongly, and was sent again
  RateRefused,  // a test of a rate went unanswered
  EraseAgain,
  PortLost,
};
struct SetbackAt {
  Setback what = Setback::BlockAgain;
  platform::Micros at{0};  // since the run began
  bool operator==(const SetbackAt&) const = default;
};

// Why the books of a production line did not take a run.
enum class BooksFault {
  None,
  Refused,      // the batch takes no further chip, or not this job: the chip is as it was
  Unreachable,  // they could not be asked, or not be written
};

struct Outcome {
  RunKind kind = RunKind::Chip;
  Ending ending = Ending::Failed;
  Stage stage = Stage::Prepare;
  std::string words;                    // why it did not pass; empty after a success
  std::string box;                      // to be shown in a message box after the verdict; empty: none
  bool wrongModel = false;              // the image is not for this chip
  BooksFault books = BooksFault::None;  // not `None`: no PASS
  bool portLost = false;                // the port did not open, or went away: the chip is not to blame
  std::optional<ChipSeen> chip;         // a chip (or board) has answered
  int baud = 0;                         // bit/s of the data; 0: it never came to that
  int firstBaud = 0;                    // bit/s of the first contact, as the job had it
  int triedBaud = 0;                    // the last rate that the chip was asked to take for the data; 0: none
  platform::Millis turnRound{};  // that the run ended with, between an answer and a data frame; 0: nothing was sent
  std::int32_t codeSum = 0, dataSum = 0;
  std::int64_t bytesSent = 0;       // of the images, retries not counted
  std::int64_t bytesLeftOut = 0;    // of the images, that differ from the fill
  std::int32_t leftOutFrom = 0;     // address of the first of them
  StageTimes spent{};               // time in each stage
  StageTimes turned{};              // of it: what the chip was left before frames
  StageTimes rested{};              // of it: rests that the protocol prescribes
  platform::Micros contact{};       // of the wait: from the chip's first byte on
  std::vector<Rest> longRests;      // in their order
  std::vector<SetbackAt> setbacks;  // in order

  bool passed() const { return ending == Ending::Passed || ending == Ending::PassedInPart; }
  platform::Micros sinceAnswer() const;  // from the chip's first answer to the end
};

// The outcome of a job that could not start.
Outcome refused(RunKind kind, const std::string& words);

}  // namespace kvr::engine
