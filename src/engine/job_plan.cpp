#include "engine/job_plan.h"

#include <algorithm>

#include "engine/baud_plan.h"
#include "engine/data_frames.h"
#include "engine/image_plan.h"

namespace kvr::engine {
namespace {

constexpr std::int32_t kSector = 512;
constexpr int kAllSectors = 255;

// What chips of the range take for their work, and what goes over the line beside the data, as measured. Seconds.
constexpr double kProgramByte = 55e-6, kEraseSector = 8e-3, kTurnRounds = 3e-3, kOptionWrite = 0.05;
constexpr double kNegotiation = 0.75, kMeasuring = 1.5;
constexpr double kSettled = 1.0, kSettledAtOneRate = 0.1;  // after the data, before the options
constexpr int kReplyBytes = 10, kStatusBytes = 90;

TargetInfo targetOf(const Job& job, const AssumedChip& chip) {
  const catalogue::FamilyTraits& traits = job.model.traits();
  const auto letter =
      job.record().quirks.secondLetter && traits.letters.size() > 1 ? traits.letters[1] : traits.letters[0];
  TargetInfo target{.firmware = chip.firmware, .stepping = letter};
  target.targetRecord = job.record();
  target.targetModelName = job.model.name();
  target.family = job.record().family;
  target.targetClockHz = static_cast<float>(traits.measuresOscillator() ? double(job.baseFrequencyHz) : chip.clockHz);
  return target;
}

PlannedSend planned(const SendRange& range, const SendPlan& sends, const Job& job) {
  const int blockSize = job.model.blockSize;
  PlannedSend send{.range = {range.first, range.last}};
  for (const AddressRange& block : blocksOf(range.first, sends.workingEnd(range, blockSize), blockSize)) {
    ++send.blocks;
    send.bytes += block.count();
    send.frames += static_cast<int>(framesOf(block, range.split, job.frameSize).size());
  }
  return send;
}

bool hasDataArea(const ImagePlan& plan) {
  return plan.planDataEnd > plan.planDataStart;
}

// A count of the row takes in the whole code area, whose last sectors are the boot block's neighbours.
PlannedErase eraseOfFirst(const Job& job, const TargetInfo& target) {
  const catalogue::McuRecord& record = job.record();
  const int sectors = eraseSectorCount(target, record, job.code.rangeEnd);
  const std::int32_t end = record.bootStart > 0 ? record.bootStart : record.bootEnd + 1;
  const std::int32_t least = sectors == record.quirks.eraseSectors ? record.apEnd + 1 : 0;
  return {.always = {{0, (sectors == kAllSectors ? end : std::max(sectors * kSector, least)) - 1}}, .onDemand = {}};
}

// Later firmwares erase the code area, and what they are told besides. Whether Data Memory is part of that, the options
// say that the chip holds: so the range is worked out for both answers.
PlannedErase eraseOfLater(const Job& job, const TargetInfo& target, const ImagePlan& plan) {
  options::OptionBytes keeps, clears;
  keeps.fill(0xFF);
  clears.fill(0x00);
  const catalogue::McuRecord& record = job.record();
  const AddressRange spared = eraseRange(target, record, plan, keeps), all = eraseRange(target, record, plan, clears);
  PlannedErase erase{.always = {{record.apStart, record.apEnd}}, .onDemand = {}};
  if (spared.first > record.apEnd + 1 && spared.first != plan.planDataStart)
    erase.always.push_back({record.apEnd + 1, spared.first - 1});
  if (hasDataArea(plan) && all.last > std::max(spared.last, plan.planDataStart))
    erase.onDemand = {record.dataStart, all.last};
  return erase;
}

PlannedErase eraseOf(const Job& job, const TargetInfo& target) {
  if (target.stepping.firstGeneration()) return eraseOfFirst(job, target);
  const auto words = options::composeOptions(job.choices, {}).words;
  return eraseOfLater(job, target, fitImages(target, job.code.rangeEnd, words.clearUnusedAp == "1").plan);
}

std::vector<ChangedOption> changesOf(const Job& job) {
  std::vector<ChangedOption> changes;
  for (const options::OptionWord& word : options::optionWords(job.record())) {
    const auto place = options::chosenPlace(word, job.choices);
    if (place && *place != word.standard)
      changes.push_back(
          {word.word, word.choices[*place].word, word.choices[*place].meaning, word.choices[word.standard].word});
  }
  return changes;
}

int baudOf(const Job& job, const TargetInfo& target) {
  if (job.fixedLink) return 115200;
  if (measuresOscillator(job)) return highestBaudOf(job);
  const auto choice =
      calculateBaud(job.model.traits(), target.targetClockHz, static_cast<int>(kBaudRows.size()), highestBaudOf(job));
  return choice ? choice->baud : 0;
}

// Seconds that so many bytes are on the line.
double onLine(std::int64_t bytes, int baud, bool parity) {
  return static_cast<double>(bytes) * (parity ? 11 : 10) / std::max(baud, 1);
}

double programSeconds(const Job& job, const JobPlan& plan) {
  const auto frameBytes = std::ssize(buildDataFrame(0, {}, 0, sumFormOf(job.record())).wire) + kReplyBytes;
  double seconds = 0;
  for (const PlannedSend& send : plan.sends)
    seconds += onLine(frameBytes * send.frames + send.bytes, plan.baud, job.record().parityUsed) +
               send.frames * kTurnRounds + static_cast<double>(send.bytes) * kProgramByte;
  return seconds;
}

// All that a run does beside erase and data.
double besideSeconds(const Job& job, const JobPlan& plan) {
  const bool oneRate = highestBaudOf(job) == job.firstBaud;
  return onLine(kStatusBytes, job.firstBaud, false) + (plan.measures ? kMeasuring : kNegotiation) +
         (oneRate ? kSettledAtOneRate : kSettled) + (plan.writesOptions ? kOptionWrite : 0);
}

double eraseSeconds(const PlannedErase& erase) {
  std::int64_t bytes = 0;
  for (const AddressRange& range : erase.always) bytes += range.count();
  return static_cast<double>(bytes) / kSector * kEraseSector;
}

}  // namespace

JobPlan planJob(const Job& job, const AssumedChip& chip) {
  const TargetInfo target = targetOf(job, chip);
  JobPlan plan{.refusal = refusalOf(job)};
  const SendPlan sends = planSends(job.record(), chip.firmware, job.model.blockSize, job.frameSize, job.code, job.data);
  for (const SendRange& range : sends.ranges) {
    plan.sends.push_back(planned(range, sends, job));
    plan.sends.back().data = plan.sends.size() > 1;
  }
  plan.leftOut = leftOutOf(sends, job);
  plan.numbersFit = carriesNumbers(sends, job);
  plan.dataIgnored = job.data.loaded && !catalogue::dataFileIsProgrammed(job.record());
  plan.erase = eraseOf(job, target);
  plan.writesOptions = !job.record().topBlockFree && !job.record().noOptions &&
                       job.model.traits().layout != catalogue::OptionLayout::None;
  const options::OptionBytes bytes = optionBytesOf(job);
  if (plan.writesOptions) plan.optionBytes.assign(bytes.begin(), bytes.begin() + 16);
  plan.changes = changesOf(job);
  plan.measures = measuresOscillator(job);
  plan.clockHz = chip.clockHz;
  plan.baud = baudOf(job, target);
  plan.seconds = besideSeconds(job, plan) + eraseSeconds(plan.erase) + programSeconds(job, plan);
  return plan;
}

}  // namespace kvr::engine
