// What a run would do with a chip of the job's model, told before anything is sent. A chip that is not connected yet
// can only be guessed at: the plan takes one with a recent firmware and the clock that most boards have. What the chip
// tells in the run may change rate, duration and what its firmware leaves room for.
#pragma once

#include <string>
#include <vector>

#include "engine/block_plan.h"
#include "engine/job.h"
#include "options/option_words.h"

namespace kvr::engine {

struct AssumedChip {
  catalogue::FirmwareVersion firmware{6, 5};
  double clockHz = 11059200;  // of families that run from a clock of their own
};

struct PlannedSend {
  AddressRange range;  // in the image
  bool data = false;   // the data image's
  int blocks = 0;
  int frames = 0;
  std::int64_t bytes = 0;  // that go out: whole blocks
  bool operator==(const PlannedSend&) const = default;
};

struct PlannedErase {
  std::vector<AddressRange> always;
  AddressRange onDemand;  // Data Memory: goes when the options that the chip holds now ask for it; empty: never
  bool operator==(const PlannedErase&) const = default;
};

// An option that is not as a freshly selected model has it.
struct ChangedOption {
  std::string word, choice, meaning, standard;
  bool operator==(const ChangedOption&) const = default;
};

struct JobPlan {
  std::string refusal;  // why the job cannot start; the rest is told all the same
  std::vector<PlannedSend> sends;
  LeftOut leftOut;
  bool numbersFit = true;    // every serial number goes out whole
  bool dataIgnored = false;  // a data image is loaded that no run programs
  PlannedErase erase;
  bool writesOptions = false;
  std::vector<std::uint8_t> optionBytes;  // 0 to 15, without what is measured in the run; empty: none are written
  std::vector<ChangedOption> changes;
  bool measures = false;  // the internal oscillator, for `Job::wantedFrequencyHz`
  double clockHz = 0;     // of the chip, as assumed
  int baud = 0;           // of the data, as far as the assumed clock makes it; 0: no rate can be made
  double seconds = 0;     // from the chip's first answer to the end, when no frame is lost
};
JobPlan planJob(const Job& job, const AssumedChip& chip = {});

// The plan in words: what a line is about, and what the run does there.
struct PlanLine {
  std::string about, text;
  bool warns = false;  // the user should look at it before the start
  bool operator==(const PlanLine&) const = default;
};
std::vector<PlanLine> planLines(const Job& job, const JobPlan& plan);
// A text of them. `column`: where what the run does begins; 0: after a blank, for a font whose letters differ in width.
std::string planText(const std::vector<PlanLine>& lines, std::size_t column);

// "8 s", "1 min 20 s": an estimate, never less than a second.
std::string durationText(double seconds);

}  // namespace kvr::engine
