// The change of speed: the chip makes the rate of its own clock and the divider that the host names, answers a test at
// it and goes back, or stays.
#include <algorithm>
#include <cmath>

#include "sim/chip.h"

namespace sim {

namespace {

// The fewest steps that a host at this first-contact rate must give the chip.
int settleFor(int family, int firstBaud, bool test) {
  struct Row {
    int baud, oldTest, oldChange, others;
  };
  constexpr Row kRows[] = {
      {9600, 255, 255, 120}, {4800, 255, 255, 80}, {2400, 140, 140, 45}, {1200, 80, 90, 40}, {0, 255, 255, 200}};
  const Row* row =
      std::find_if(std::begin(kRows), std::end(kRows) - 1, [&](const Row& r) { return r.baud == firstBaud; });
  return family != 1 ? row->others : test ? row->oldTest : row->oldChange;
}

int waitClass(int family, double clockHz) {
  struct Rule {
    int megahertz, value;
  };
  const int m = static_cast<int>(std::floor(clockHz / 1e6 + 0.5));
  const auto pick = [&](std::initializer_list<Rule> rules) {
    for (const Rule& rule : rules)
      if (m <= rule.megahertz) return rule.value;
    return 128;
  };
  if (family == 0) return 128;
  if (family == 1) return pick({{4, 131}, {14, 130}, {29, 129}});
  if (family == 2 || isLateFirst(family)) return pick({{5, 131}, {10, 130}, {19, 129}});
  return pick({{1, 135}, {2, 134}, {3, 133}, {6, 132}, {12, 131}, {20, 130}, {24, 129}});
}

int fixedLinkTime(double clockHz) {
  const double square = clockHz * clockHz;
  if (clockHz < 4e6) return static_cast<int>(1.8e14 / square) + 23;
  if (clockHz < 14e6) return static_cast<int>(5.4e14 / square) + 5;
  if (clockHz < 18.432e6) return static_cast<int>(8.5e14 / square) + 2;
  if (clockHz < 20.5e6) return 4;
  return clockHz < 22.2e6 ? 3 : 2;
}

std::string paramText(std::span<const std::uint8_t> p) {
  return " (" + std::to_string(p[0]) + ", " + std::to_string(p[1]) + ")";
}

}  // namespace

std::optional<Line> Chip::lineFor(int high, int low) const {
  double rate = 0;
  if (firstGenerationDivider()) {
    rate = clockHz() / 32 / (65536 - (high * 256 + low));
  } else {
    constexpr std::pair<int, int> kModes[] = {{0, 384}, {128, 192}, {64, 32}, {192, 16}};
    const auto mode =
        std::find_if(std::begin(kModes), std::end(kModes), [&](const auto& m) { return m.first == high; });
    if (mode == std::end(kModes)) return std::nullopt;
    rate = clockHz() / mode->second / (256 - low);
  }
  if (rate < 300 || rate > 500000) return std::nullopt;
  Line line = firstLine_;
  line.baud = static_cast<int>(std::lround(rate));
  return line;
}

Micros Chip::baudDelay(bool test) const {
  if (fixedLink_) return config_.times.turnaround;
  if (family() == 1) return config_.times.firstGenerationReply;
  return test ? config_.times.testReply : config_.times.changeReply;
}

// The lowest and highest class that the host may rightly arrive at.
std::pair<int, int> Chip::waitClassRange() const {
  const bool halved = letter_ == 'A' && (options_[0] & 8);
  const double clock = halved ? sessionClock_ / 2 : sessionClock_;
  return {waitClass(family(), clock * (1 + kClockTolerance)), waitClass(family(), clock * (1 - kClockTolerance))};
}

void Chip::checkTimes(Micros at, std::span<const std::uint8_t> p, bool test) {
  const bool halved = letter_ == 'A' && (options_[0] & 8);
  const double clock = halved ? sessionClock_ / 2 : sessionClock_;
  if (fixedLink_) {
    int fewest = fixedLinkTime(clock), most = fewest;
    for (int step = -10; step <= 10; ++step) {  // the steps between the formulas go up and down
      const int time = fixedLinkTime(clock * (1 + kClockTolerance * step / 10));
      fewest = std::min(fewest, time);
      most = std::max(most, time);
    }
    judge(p[4] >= (fewest & 255) || fewest > 255, at, "fixed link: time byte too small" + paramText(p));
    judge(p[4] <= most, at, "fixed link: time byte too large" + paramText(p));
  } else {
    const int settle = settleFor(family(), firstLine_.baud, test);
    const bool single = p[4] == settle, twofold = p[4] == ((2 * settle) & 255);
    judge(sessionClock_ > 68e6 * (1 + kClockTolerance)   ? twofold
          : sessionClock_ < 68e6 * (1 - kClockTolerance) ? single
                                                         : single || twofold,
          at, "settling count " + std::to_string(p[4]));
  }
  if (!test) return;
  const auto [fewest, most] = waitClassRange();
  judge(p[5] >= fewest && p[5] <= most, at, "clock class " + std::to_string(p[5]));
}

void Chip::checkBaudPayload(Micros at, std::span<const std::uint8_t> p, bool test) {
  const int twice = (256 - p[1]) * 2;
  const int expected = twice > 254 ? (test ? 254 : 255) : twice;
  judge(p[2] == 0xFF, at, "baud frame: third byte");
  judge(p[3] == expected, at, "baud frame: fourth byte " + std::to_string(p[3]));
  checkTimes(at, p, test);
  judgeFair(!erased_, at, "baud frame after the erase");
}

void Chip::onBaudTest(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(row().frame2);
  if (p.size() != 6) return judge(false, at, "baud test: length " + std::to_string(frame.length()));
  checkBaudPayload(at, p, true);
  if (testsRefused_ < config_.faults.refusesBaudTests) {
    ++testsRefused_;
    return journal_.note(at, "baud test refused" + paramText(p));
  }
  if (fixedLink_ && p[0] == 0 && p[1] == 0) {
    reply(at + config_.times.turnaround, 0x8F, {});
    return;
  }
  const auto fast = lineFor(p[0], p[1]);
  if (!fast) return journal_.note(at, "baud test beyond what I can make" + paramText(p));
  testedHigh_ = p[0];
  testedLow_ = p[1];
  const Micros answerAt = at + baudDelay(true);
  busy(at, answerAt, "waits with the answer to a baud test");
  schedule_.add(answerAt, [this, fast](Micros when) {
    line_ = *fast;
    journal_.note(when, "answers a test at " + std::to_string(line_.baud) + " baud");
    schedule_.add(reply(when, 0x8F, {}), [this](Micros) { line_ = firstLine_; });
  });
}

void Chip::onBaudChange(Micros at, const HostFrame& frame) {
  const auto p = frame.payload(row().frame2);
  if (p.size() != 5) return judge(false, at, "baud change: length " + std::to_string(frame.length()));
  checkBaudPayload(at, p, false);
  judge(!rcFamily(), at, "plain baud change to a chip with an oscillator to trim");
  judgeFair(p[0] == testedHigh_ && p[1] == testedLow_, at, "change to a rate that was not tested" + paramText(p));
  const auto fast = lineFor(p[0], p[1]);
  if (!fast) return judge(false, at, "baud change beyond what I can make" + paramText(p));
  if (config_.faults.passesTestNotChange)  // the host will speak at a rate that I do not hear
    return schedule_.add(at + 1, [this](Micros when) { disturbed(when); });
  reload_ = firstGenerationDivider() ? 65536 - (p[0] * 256 + p[1]) : 256 - p[1];
  const Micros answerAt = at + baudDelay(false);
  busy(at, answerAt, "waits with the answer to the baud change");
  schedule_.add(answerAt, [this, fast](Micros when) {
    line_ = *fast;
    changed_ = true;
    journal_.note(when, "now at " + std::to_string(line_.baud) + " baud");
    reply(when, row().extSession ? 0x84 : 0x8E, {});
  });
}

}  // namespace sim
