// Families 15 and 16: the chip sets its oscillator to each pair of values that the host names, counts it against the
// host's pulses, and at the end runs from the pair and the divider that the host works out.
#include <algorithm>
#include <array>
#include <cmath>

#include "sim/chip.h"
#include "sim/counting.h"

namespace sim {

namespace {

constexpr int kPulsesAPoint = 2;
using Choices = std::array<int, 7>;  // by the wanted frequency, which the chip does not know

struct Pacing {
  int baud;
  Choices delayFirst, delaySecond, pulsesFirst, pulsesSecond;
};

constexpr Choices kOther = {255, 255, 255, 255, 255, 255, 255};
constexpr Pacing kPacing[] = {{1200,
                               {16, 16, 20, 14, 12, 18, 12},
                               {32, 32, 20, 24, 12, 10, 22},
                               {34, 34, 32, 26, 26, 26, 23},
                               {70, 60, 50, 42, 34, 34, 31}},
                              {2400,
                               {6, 6, 8, 6, 6, 6, 6},
                               {22, 20, 10, 12, 10, 10, 8},
                               {22, 22, 20, 18, 15, 15, 15},
                               {68, 50, 50, 36, 30, 30, 24}},
                              {4800,
                               {6, 6, 6, 8, 6, 6, 6},
                               {24, 10, 10, 30, 30, 28, 24},
                               {22, 22, 22, 24, 18, 15, 15},
                               {68, 50, 50, 45, 42, 42, 42}},
                              {9600,
                               {6, 6, 6, 6, 12, 12, 12},
                               {22, 65, 10, 30, 10, 32, 28},
                               {22, 22, 22, 22, 22, 22, 20},
                               {90, 85, 42, 42, 42, 42, 42}},
                              {0, kOther, kOther, kOther, kOther}};

const Pacing& pacingAt(int baud) {
  return *std::find_if(std::begin(kPacing), std::end(kPacing) - 1, [&](const Pacing& p) { return p.baud == baud; });
}

bool offers(const Choices& choices, int value) {
  return std::find(choices.begin(), choices.end(), value) != choices.end();
}

// The six points of the first round: two to a line, which bands they lie in decides where.
bool firstRoundIsSound(int family, std::span<const std::uint8_t> records) {
  const auto code = [&](std::size_t i) { return records[4 * i]; };
  const auto fine = [&](std::size_t i) { return records[4 * i + 1]; };
  for (std::size_t i = 0; i < 6; ++i) {
    const int low = family != 15 && code(i) >= 128 ? 32 : 24;
    if ((code(i) & 63) != low || code(i) != code(i - i % 2)) return false;
  }
  const bool one = code(0) == code(2);
  const std::array<int, 6> fines = one ? std::array<int, 6>{0, 0x80, 0x80, code(2) >= 192 ? 0xA0 : 0xFF, 0, 0x80}
                                       : std::array<int, 6>{0x80, 0xFF, 0, 0x80, 0, 0x80};
  for (std::size_t i = 0; i < 6; ++i)
    if (fine(i) != fines[i]) return false;
  return (code(4) >> 6) == 1 || (code(4) >> 6) == 2;
}

bool secondRoundIsSound(std::span<const std::uint8_t> records) {
  for (std::size_t i = 4; i < records.size(); i += 4)
    if (records[i] != records[0] || records[i + 1] != records[i - 3] + 1) return false;
  return true;
}

}  // namespace

void Chip::onMeasure(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(true);
  judge(rcFamily(), at, "measure frame to a chip without such an oscillator");
  if (!rcFamily()) return;
  judgePulseCount(at);
  const std::size_t count = p.size() > 11 ? p[10] : 0;
  if (count == 0 || p.size() != 11 + 4 * count)
    return judge(false, at, "measure: length " + std::to_string(frame.length()));
  const bool first = count == 6;
  const Pacing& pacing = pacingAt(firstLine_.baud);
  const auto records = p.subspan(11);
  judge(std::equal(statusTail_.begin(), statusTail_.end(), p.begin()), at, "measure: status tail");
  judge(p[7] == 0xFF && p[9] == 0xFF, at, "measure: fixed bytes");
  judge(offers(first ? pacing.delayFirst : pacing.delaySecond, p[8]), at, "measure: delay " + std::to_string(p[8]));
  judge(first ? firstRoundIsSound(family(), records) : secondRoundIsSound(records), at, "measure: points");
  measuring_.clear();
  for (std::size_t i = 0; i < count; ++i) {
    judge(records[4 * i + 2] == 2 && records[4 * i + 3] == 0, at, "measure: point " + std::to_string(i));
    measuring_.push_back({records[4 * i], records[4 * i + 1]});
  }
  measurePulses_ = 0;
  measureRound_ = first ? 1 : 2;
}

void Chip::hearMeasurePulse(Micros at) {
  ++measurePulses_;
  const int needed = kPulsesAPoint * static_cast<int>(measuring_.size());
  if (measuring_.empty() || measurePulses_ < needed) return;
  if (config_.faults.silentMeasure) return measuring_.clear();
  const Micros done = at + config_.times.turnaround + static_cast<Micros>(measuring_.size()) * config_.times.rcMeasure;
  busy(at, done, "measures its oscillator");
  schedule_.add(done, [this, points = std::move(measuring_)](Micros when) {
    Bytes payload(10);
    std::generate(payload.begin(), payload.end(), [this] { return filler(); });
    payload.push_back(static_cast<std::uint8_t>(config_.faults.emptyMeasureReply ? 0 : points.size()));
    for (const Point& point : points) {
      const int count = measuredCount(point.code, point.fine);
      payload.insert(payload.end(),
                     {point.code, point.fine, static_cast<std::uint8_t>(count >> 8), static_cast<std::uint8_t>(count)});
    }
    if (config_.faults.cutMeasureReply) payload.resize(payload.size() - 4 * (points.size() / 2));
    reply(when, config_.faults.wrongMeasureReply ? 0x66 : 0x65, payload);
  });
  measuring_.clear();
}

int Chip::measuredCount(int code, int fine) {
  const int baud = firstLine_.baud;
  const double steps = (oscillator_.measured(code, fine) / loopClocks(baud) - 6) / ratioTo1200(baud);
  return static_cast<int>(std::clamp(std::round(steps), 0.0, 65535.0));
}

void Chip::judgePulseCount(Micros at) {
  if (measureRound_ == 0) return;
  const Pacing& pacing = pacingAt(firstLine_.baud);
  judgeFair(offers(measureRound_ == 1 ? pacing.pulsesFirst : pacing.pulsesSecond, measurePulses_), at,
            "measure: " + std::to_string(measurePulses_) + " pulses");
  measureRound_ = 0;
}

void Chip::onRcBaud(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(true);
  judge(rcFamily(), at, "oscillator and baud frame to another family");
  if (!rcFamily()) return;
  const int ticks = 65536 - (p[5] * 256 + p[6]);
  const bool fast = ticks == 20000;  // 10 ms of twelve clocks at 24 MHz, else at 12 MHz
  judge(fast || ticks == 10000, at, "oscillator and baud: timer value " + std::to_string(ticks));
  judge(p[4] == 53 && p[8] == 12 && p[9] == 0xFF && p[10] == 0, at, "oscillator and baud: fixed bytes");
  judge(p[7] == (fast ? 129 : 131), at, "oscillator and baud: clock class " + std::to_string(p[7]));
  judge((p[0] >> 6) == (fast ? 2 : 1), at, "oscillator and baud: band");
  if (config_.faults.silentRcBaud) return;
  bootCode_ = p[0];
  bootFine_ = p[1];
  const double rate = clockHz() / ((p[2] ? p[2] : 1) * (256 - p[3]));
  if (rate < 300 || rate > 500000) return judge(false, at, "oscillator and baud: no rate that I can make");
  const Micros answerAt = at + config_.times.rcChangeReply;
  busy(at, answerAt, "waits with the answer to the baud change");
  schedule_.add(answerAt, [this, rate](Micros when) {
    line_.baud = static_cast<int>(std::lround(rate));
    changed_ = true;
    journal_.note(when, "now at " + std::to_string(line_.baud) + " baud");
    reply(when, 0x84, {});
  });
}

}  // namespace sim
