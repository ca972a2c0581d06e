// How a run ended. Verdict sign, counter, batch log, beep and serial numbers hang on this value alone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "options/option_set.h"
#include "platform/event_loop.h"

namespace kvr::engine {

enum class RunKind { Chip, Board, Demo, Trigger, Check };

// Where a run is, or where it ended.
enum class Stage { Prepare, Wait, Identify, Baud, Erase, Program, Finish, Options, Report };
inline constexpr std::size_t kStages = 9;

enum class Ending {
  Refused,       // could not start: nothing was sent
  Failed,        // `words` says why
  Stopped,       // by the user
  Passed,        // everything went through
  PassedInPart,  // everything that fits went through; bytes of the image were left out
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

struct Outcome {
  RunKind kind = RunKind::Chip;
  Ending ending = Ending::Failed;
  Stage stage = Stage::Prepare;
  std::string words;             // why it did not pass; empty after a success
  std::string box;               // to be shown in a message box after the verdict; empty: none
  bool wrongModel = false;       // the image is not for this chip
  bool portLost = false;         // the port did not open, or went away: the chip is not to blame
  std::optional<ChipSeen> chip;  // a chip (or board) has answered
  int baud = 0;                  // bit/s of the data; 0: it never came to that
  std::int32_t codeSum = 0, dataSum = 0;
  std::int64_t bytesSent = 0;                     // of the images, retries not counted
  std::int64_t bytesLeftOut = 0;                  // of the images, that differ from the fill
  std::int32_t leftOutFrom = 0;                   // address of the first of them
  std::array<platform::Micros, kStages> spent{};  // time in each stage

  bool passed() const { return ending == Ending::Passed || ending == Ending::PassedInPart; }
  platform::Micros sinceAnswer() const;  // from the chip's first answer to the end
};

// The outcome of a job that could not start.
Outcome refused(RunKind kind, const std::string& words);

}  // namespace kvr::engine
