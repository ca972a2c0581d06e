// First contact: the chip measures the sync bytes, says who it is, and says so again when the host seems not to have
// heard.
#include <cmath>

#include "sim/chip.h"
#include "sim/counting.h"

namespace sim {

namespace {

constexpr int kSyncNeeded = 8;
constexpr int kPulsesNeeded = 4;
constexpr Micros kSyncPause = 500 * kMillisecond;  // a longer silence starts the count again
constexpr Micros kHostSettles =
    100 * kMillisecond;  // sync bytes still under way after the status frame are no new call

bool isFixedLinkCall(const HostFrame& frame) {
  return frame.sumGood && frame.endGood && frame.command() == 0x8A && frame.length() <= 7;
}

bool isMeasuredStep(const HostFrame& frame) {
  return frame.sumGood && frame.endGood && frame.command() == 0x80 && frame.length() == 7;
}

}  // namespace

std::array<std::uint16_t, 8> Chip::countsAt(int baud) {
  const int ratio = ratioTo1200(baud);
  double total = 0;
  int parts = 8;
  if (fixedLink_) {
    total = sessionClock_ / 500.5 - 145;
  } else if (pulseFamily()) {
    parts = 4;
    total = (sessionClock_ / loopClocks(baud) - 6) * 4 / ratio;
  } else {
    total = (sessionClock_ / loopClocks(baud) - 6) * 8 / ratio;
  }
  const auto whole = static_cast<std::int64_t>(std::llround(total));
  std::array<std::uint16_t, 8> counts{};
  for (int i = 0; i < parts; ++i)
    counts[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(whole * (i + 1) / parts - whole * i / parts);
  for (int i = parts; i < 8; ++i) counts[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(0x100 + filler());
  return counts;
}

void Chip::hearSync(Micros at, const Heard& heard) {
  if (!reader_.begun() && heard.byte == 0x7F) {
    if (pulsesAwaited_) {
      if (++pulsesHeard_ == kPulsesNeeded) answerPulses(at);
      return;
    }
    if (state_ != ChipState::syncing && at < statusEnd_ + kHostSettles) return;
    const bool another = at - lastSync_ > kSyncPause || heard.line.baud != firstLine_.baud;
    firstLine_ = heard.line;
    lastSync_ = at;
    syncHeard_ = another ? 1 : syncHeard_ + 1;
    if (syncHeard_ >= kSyncNeeded) answerSync(at);
    return;
  }
  const HostFrame* frame = reader_.take(at, heard);
  if (!reader_.begun() && !frame && heard.byte != 0x46) syncHeard_ = 0;
  if (!frame) return;
  if (state_ == ChipState::greeted && isMeasuredStep(*frame)) return beginMeasuredStep(at);
  if (isFixedLinkCall(*frame)) {
    judge(heard.line.baud == 115200 && heard.line.parity == 'n', at, "fixed link at other than 115200,n");
    fixedLink_ = true;
    firstLine_ = line_ = heard.line;
    sessionClock_ = clockHz();
    counts_ = countsAt(115200);
    return sendStatus(at + config_.times.turnaround, 0x8A);
  }
  if (state_ == ChipState::session) return hearFrame(at, *frame);
  journal_.note(at, "a frame before first contact, ignored");
}

void Chip::answerSync(Micros at) {
  syncHeard_ = 0;
  fixedLink_ = false;
  line_ = firstLine_;
  line_.parity = !row().parityUsed ? 'n' : row().parityEven ? 'e' : 'o';
  firstLine_ = line_;
  sessionClock_ = clockHz();
  counts_ = countsAt(line_.baud);
  const Micros start = at + config_.times.turnaround;
  if (!pulseFamily() || config_.directStatus) return sendStatus(start, 0x50);
  enter(ChipState::greeted, at, "asks for measured pulses");
  reader_.reset();
  statusEnd_ = reply(start, 0x80, {});
}

void Chip::beginMeasuredStep(Micros at) {
  journal_.note(at, "measured pulses announced");
  pulsesAwaited_ = true;
  pulsesHeard_ = 0;
}

void Chip::answerPulses(Micros at) {
  pulsesAwaited_ = false;
  counts_ = countsAt(line_.baud);
  // The last pulses are still on the line.
  sendStatus(at + static_cast<Micros>(3 * line_.byteMicros()), 0x80);
}

void Chip::sendStatus(Micros at, std::uint8_t command) {
  if (state_ != ChipState::session) {
    enter(ChipState::session, at, "status frame at " + std::to_string(line_.baud) + " baud");
    ++sessions_;
  }
  fresh_ = true;
  reader_.reset();
  statusEnd_ = reply(at, command, statusPayload());
}

}  // namespace sim
