// The option frames of all generations: taken apart, checked for agreement with themselves, stored in the family's
// layout.
#include <algorithm>
#include <array>
#include <cmath>

#include "sim/chip.h"

namespace sim {

void Chip::checkClock(Micros at, std::span<const std::uint8_t> four) {
  const double told = static_cast<double>(number(four));
  judge(std::abs(told / sessionClock_ - 1) < kClockTolerance, at,
        "options: clock " + std::to_string(static_cast<std::int64_t>(told)));
  std::copy(four.begin(), four.end(), statedClock_.begin());
}

// Two reload bytes for the chip's serial port: for the present speed of the core, or for twice the clocks where the
// choice is made for it.
bool Chip::takePathB(Micros at, std::span<const std::uint8_t> p, OptionBytes& wanted) {
  const bool doubled = (p[0] & 1) == 0;
  const int reload = 65536 - (p[1] * 256 + p[2]);
  if (reload_ > 0)
    judgeFair(reload == (doubled ? 2 * reload_ : reload_), at, "options: reload value " + std::to_string(reload));
  wanted[1] = p[0];
  wanted[8] = p[3];
  return true;
}

bool Chip::takePathC(Micros at, const HostFrame& frame, OptionBytes& wanted) {
  const auto p = frame.payload(row().frame2);
  if (family() >= 7) {
    std::copy_n(p.begin(), 16, wanted.begin());
    checkClock(at, p.subspan(16, 4));
    return true;
  }
  const bool hazel = family() == 6;
  const auto all = p.subspan(9, 16);
  judge(p[0] == all[2] && p[1] == all[3] && p[2] == all[8] && p[3] == all[10] && p[4] == all[hazel ? 0 : 11], at,
        "options: the two lists differ");
  checkClock(at, p.subspan(5, 4));
  checkClock(at, p.subspan(25, 4));
  judge(p[29] == 0xFF && p[30] == 0xFF && p[31] == 0xFF, at, "options: tail not FF");
  if (laterOrder() || lateH()) {
    std::copy_n(all.begin(), 16, wanted.begin());
  } else {
    wanted[2] = p[0];
    wanted[3] = p[1];
    wanted[8] = p[2];
    wanted[10] = p[3];
    wanted[hazel ? 0 : 11] = p[4];
  }
  return true;
}

bool Chip::takePathD(Micros at, std::span<const std::uint8_t> p, OptionBytes& wanted) {
  constexpr std::array<int, 6> kOrder = {0, 3, 4, 8, 10, 11};
  for (std::size_t i = 0; i < kOrder.size(); ++i) wanted[static_cast<std::size_t>(kOrder[i])] = p[i];
  const auto tail = p.subspan(6, 4);
  if (p[1] & 2)
    judge(std::all_of(tail.begin(), tail.end(), [](int b) { return b == 0xFF; }), at, "options: clock not blank");
  else
    checkClock(at, tail);
  return true;
}

bool Chip::takeOptions(Micros at, const HostFrame& frame, OptionBytes& wanted) {
  const auto p = frame.payload(row().frame2);
  const int family = this->family();
  if (family == 0 && p.size() == 1) {
    judge((p[0] & 0xF7) == 64 || (p[0] & 0xF7) == 32, at, "options: byte " + std::to_string(p[0]));
    wanted[0] = p[0];
    return true;
  }
  if (family != 0 && firstGenerationDivider() && p.size() == 4) return takePathB(at, p, wanted);
  if (family >= 3 && family <= 6 && p.size() == 32) return takePathC(at, frame, wanted);
  if (family >= 7 && !firstGenerationDivider() && p.size() == 20) return takePathC(at, frame, wanted);
  if (family == 18 && p.size() == 10) return takePathD(at, p, wanted);
  judge(false, at, "options: length " + std::to_string(frame.length()));
  return false;
}

void Chip::onOptions(Micros at, const HostFrame& frame) {
  OptionBytes wanted = options_;
  judge(!row().topBlockFree && family() != 1, at, "options to a chip that takes none");
  judgeFair(row().extSession ? finished_ : programming_, at, "options before the end of programming");
  finished_ = true;  // once excused, the repeats are
  if (!takeOptions(at, frame, wanted)) return;
  if (config_.faults.silentOptions) return;
  optionsTaken_ = true;
  const Micros done = at + config_.times.turnaround + config_.times.writeOptions;
  busy(at, done, "writes options");
  if (answered81_ < config_.faults.answersOptionsWith81 && !row().extSession) {
    ++answered81_;
    schedule_.add(done, [this](Micros when) { reply(when, 0x81, {}); });
    return;
  }
  ++optionWrites_;
  if (!config_.faults.optionsDoNotStick) options_ = wanted;
  journal_.note(at, "options stored");
  schedule_.add(done, [this](Micros when) {
    if (row().extSession)
      reply(when, 0x50, optionsPayload());
    else
      reply(when, 0x80, {});
  });
}

}  // namespace sim
