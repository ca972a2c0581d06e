#include "sim/chip.h"

#include <algorithm>

namespace sim {

namespace {

OptionBytes factoryOptions(const McuRecord& row) {
  OptionBytes options;
  options.fill(0xFF);
  const int family = familyOf(row);
  if (family == 0) options[0] = 0x40;
  if (family == 2 || isLateFirst(family)) options[1] = 253;
  if (family >= 3 && family <= 6) options[8] = 247;
  if (keepsAllOptions(family)) options[3] = 88, options[4] = 128;
  return options;
}

}  // namespace

std::string_view nameOf(ChipState state) {
  constexpr std::string_view kNames[] = {"off", "syncing", "greeted", "session", "application"};
  return kNames[static_cast<int>(state)];
}

std::int64_t bootStartOf(const McuRecord& row, int reservedCode) {
  const int family = familyOf(row);
  if (family != 1 && family != 2 && !isLateFirst(family)) return row.bootStart;
  const bool big = row.name == "Cedar-L50D" || row.name == "Cedar-H50D";
  const int reserved = big ? 2048 : 1024 + 512 * reservedCode;
  return row.bootEnd + 1 - reserved;
}

Chip::Chip(ChipConfig config)
    : config_(std::move(config)),
      letter_(config_.letter ? config_.letter : usualLetter(*config_.row)),
      firmware_(config_.firmware ? config_.firmware : usualFirmware(*config_.row)),
      noise_(config_.seed * 0x9E3779B97F4A7C15U + 1),
      flash_(static_cast<std::size_t>(config_.row->bootEnd) + 1,
             static_cast<std::size_t>(bootStartOf(*config_.row, config_.reservedCode)), config_.seed),
      options_(config_.options.value_or(factoryOptions(*config_.row))),
      oscillator_(config_.rc, config_.seed),
      reader_(config_.row->frame2 ? FrameCheck::sum16 : FrameCheck::sum8, config_.times.frameGap) {
  if (config_.faults.oldFirmware) firmware_ = letter_ <= 'C' ? 0x39 : 0x49;
  if (config_.faults.wrongModelCode && family() == 0) letter_ = 'C';
  bootCode_ = options_[3];
  bootFine_ = options_[4];
  for (int i = 0; i < 7; ++i) factoryId_.push_back(filler());
  statusTail_ = {0, 0, 0, filler(), filler(), filler(), filler()};
  for (const BlockFailure& failure : config_.faults.failsBlocks) failuresLeft_[failure.block] = failure.times;
}

std::uint8_t Chip::filler() {
  noise_ = noise_ * 6364136223846793005U + 1442695040888963407U;
  return static_cast<std::uint8_t>(noise_ >> 40);
}

bool Chip::isFamily(std::initializer_list<int> families) const {
  return std::find(families.begin(), families.end(), family()) != families.end();
}

// --- Time and power ---

std::optional<Micros> Chip::nextDue() const {
  const auto planned = schedule_.nextDue();
  const auto own = applicationRuns() ? application_->nextDue() : std::nullopt;
  return planned && own ? std::min(*planned, *own) : planned ? planned : own;
}

void Chip::advanceTo(Micros now) {
  for (auto due = nextDue(); due && *due <= now; due = nextDue())
    if (!schedule_.doOne(*due)) application_->advanceTo(*due);
}

void Chip::setApplication(std::unique_ptr<Application> application) {
  application_ = std::move(application);
  application_->say = [this](Micros start, std::span<const std::uint8_t> bytes) {
    return say ? say(start, application_->line(), bytes) : start;
  };
  application_->resetIntoBoot = [this](Micros at) { powerOn(at + 1); };
}

void Chip::runApplication(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) { leaveBoot(when, "starts by itself"); });
}

void Chip::powerOn(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) { startBoot(when); });
}

void Chip::powerOff(Micros at) {
  schedule_.addPowerChange(at, [this](Micros when) { enter(ChipState::off, when, "power off"); });
}

bool Chip::supplied(Micros at) const {
  return !cutAt_ || at < *cutAt_ + config_.supply.holdUp;
}

// A supply that comes back before the capacitors are empty has never been away for the chip.
void Chip::linesMoved(Micros at, const ModemLines& lines) {
  const bool feeds = config_.supply.feeds(lines);
  if (feeds == !cutAt_) return;
  const bool reset = !supplied(at);
  if (feeds)
    cutAt_.reset();
  else
    cutAt_ = at;
  if (feeds && reset) powerOn(at);
  if (!feeds)
    schedule_.add(at + config_.supply.holdUp, [this](Micros when) {
      if (!supplied(when)) powerOff(when);
    });
}

void Chip::startBoot(Micros at) {
  if (!supplied(at)) return;
  enter(ChipState::syncing, at, "power on");
  fixedLink_ = disturbed_ = fresh_ = pulsesAwaited_ = false;
  changed_ = erased_ = programming_ = finished_ = optionsTaken_ = false;
  busyUntil_ = at;
  syncHeard_ = pulsesHeard_ = measureRound_ = 0;
  testedHigh_ = testedLow_ = -1;
  lastBlock_ = blockStart_ = -1;
  reload_ = 0;
  measuring_.clear();
  for (auto& round : rounds_) round.clear();
  bootCode_ = options_[3];
  bootFine_ = options_[4];
  reader_.reset();
  if (config_.times.listen > 0)
    schedule_.add(at + config_.times.listen, [this](Micros when) {
      if (state_ == ChipState::syncing) leaveBoot(when, "nobody called");
    });
}

void Chip::leaveBoot(Micros at, const std::string& why) {
  enter(ChipState::application, at, why);
  bootCode_ = options_[3];
  bootFine_ = options_[4];
  if (application_) application_->start(at);
}

void Chip::enter(ChipState state, Micros at, const std::string& why) {
  state_ = state;
  journal_.note(at, std::string(nameOf(state)) + ": " + why);
}

void Chip::disturbed(Micros at) {
  disturbed_ = true;
  disturbedUntil_ = std::max(disturbedUntil_, at);
  ++disturbances_;
  journal_.note(at, "the wire disturbs the conversation");
}

double Chip::clockHz() const {
  return rcFamily() ? oscillator_.frequency(bootCode_, bootFine_) : config_.clockHz;
}

double Chip::applicationClockHz() const {
  return rcFamily() ? oscillator_.frequency(options_[3], options_[4]) : config_.clockHz;
}

// --- Hearing ---

std::optional<Line> Chip::line() const {
  if (state_ == ChipState::greeted || state_ == ChipState::session) return line_;
  if (applicationRuns()) return application_->line();
  return std::nullopt;
}

void Chip::hear(Micros end, const Heard& heard) {
  advanceTo(end);
  judge(!cutAt_, end, "a byte while my supply is switched off, which feeds me through the data line");
  if (applicationRuns()) return application_->hear(end, heard.byte);
  if (state_ == ChipState::off || state_ == ChipState::application) return;
  if (heard.damage == Damage::wrongLine) return judgeWrongLine(end, heard);
  if (measureRound_ > 0 && heard.byte == 0x7F && !reader_.begun()) return hearMeasurePulse(end);
  if (end < busyUntil_ || missesByte(end, heard)) return;
  if (state_ != ChipState::session) return hearSync(end, heard);
  if (!reader_.begun() && heard.byte == 0x7F && fresh_ && !pulseFamily()) return hearSync(end, heard);
  if (const HostFrame* frame = reader_.take(end, heard)) hearFrame(end, *frame);
}

// A host that has waited its turn-round cannot know that this chip needs longer: what it does next is excused.
bool Chip::missesByte(Micros end, const Heard& heard) {
  if (!deafness_.swallows(end, heard.line)) return false;
  if (state_ == ChipState::session && heard.byte != 0x7F) disturbed_ = true;
  return true;
}

void Chip::judgeWrongLine(Micros at, const Heard& heard) {
  if (at - lastSync_ > config_.times.frameGap) wrongLineRun_.clear();
  lastSync_ = at;
  wrongLineRun_.push_back(heard.meant);
  const std::size_t size = wrongLineRun_.size();
  const bool frame = size >= 3 && wrongLineRun_[size - 3] == 0x46 && wrongLineRun_[size - 2] == 0xB9 &&
                     wrongLineRun_[size - 1] == 0x6A;
  if (frame)
    judgeFair(false, at,
              "a frame at " + std::to_string(heard.line.baud) + "," + heard.line.parity + " while I listen at " +
                  std::to_string(line_.baud) + "," + line_.parity);
}

void Chip::hearFrame(Micros at, const HostFrame& frame) {
  if (!frame.endGood || !frame.sumGood) {
    journal_.note(at, "a frame with a bad sum or end, dropped");
    if (!frame.damaged) judgeFair(false, at, "frame with a bad length, sum or end");
    return;
  }
  wrongLineRun_.clear();
  judgeFair(frame.begun - deafness_.answerEnd() >= kMillisecond, at, "a frame within 1 ms of my last byte");
  const int before = disturbances_;
  dispatch(at, frame);
  if (disturbances_ == before && at > disturbedUntil_) disturbed_ = false;  // not when the answer was tampered with
  fresh_ = false;
}

void Chip::judge(bool good, Micros at, const std::string& text) {
  if (!good) journal_.violation(at, text);
}

void Chip::judgeFair(bool good, Micros at, const std::string& text) {
  if (!disturbed_) return judge(good, at, text);
  if (!good) journal_.note(at, "excused after a disturbance: " + text);
}

// --- Speaking ---

Micros Chip::reply(Micros at, std::uint8_t command, std::span<const std::uint8_t> payload) {
  Bytes wire = buildReply(command, payload, row().frame2);
  if (config_.bareReplies && (config_.shortStatus || !asksForStartPair())) wire.erase(wire.begin(), wire.begin() + 2);
  const Micros end = say ? say(at, line_, wire) : at;
  busyUntil_ = std::max(busyUntil_, end);
  deafness_.answered(end, config_.times.deaf);
  return end;
}

void Chip::busy(Micros from, Micros to, const std::string& what) {
  busyUntil_ = std::max(busyUntil_, to);
  if (to > from) journal_.stated(from, to, what);
}

}  // namespace sim
