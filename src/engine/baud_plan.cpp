#include "engine/baud_plan.h"

#include <algorithm>
#include <span>

#include "platform/text.h"

namespace kvr::engine {

using catalogue::BaudPace;
using catalogue::WaitRules;

namespace {

struct Variant {
  int divisor;
  int mode;
};
constexpr Variant kTimer = {32, 0};
constexpr std::array<Variant, 4> kLater = {{{16, 192}, {32, 64}, {32 * 6, 128}, {32 * 12, 0}}};  // in order of trial

struct Candidate {
  int reload = 0;
  float errorPercent = 100;
};

// Rates and errors are kept with 24 bits, as the chip's makers work them out; near a tolerance it matters.
Candidate candidateOf(double clock, int divisor, int rate) {
  const double reload = static_cast<double>(platform::floorOf(clock / divisor / rate + 0.5));
  if (reload <= 0) return {};
  const float realRate = static_cast<float>(clock / divisor / reload);
  const float error = static_cast<float>((static_cast<double>(realRate) - rate) / rate * 100);
  return {static_cast<int>(std::min(reload, 1e9)), error};
}

bool isGood(bool timer, const Candidate& c) {
  if (timer) return c.errorPercent > -3.2 && c.errorPercent < 4.0 && c.reload > 2;
  return c.errorPercent > -2.5 && c.errorPercent < 2.5 && c.reload > 0 && c.reload < 256;
}

ReloadBytes bytesOf(std::int64_t value) {
  return {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

struct UpTo {
  int megahertz;
  int value;
};

std::span<const UpTo> boundsOf(WaitRules rules) {
  static constexpr std::array<UpTo, 3> kBirch = {{{4, 131}, {14, 130}, {29, 129}}};
  static constexpr std::array<UpTo, 3> kCedar = {{{5, 131}, {10, 130}, {19, 129}}};
  static constexpr std::array<UpTo, 7> kLaterRules = {
      {{1, 135}, {2, 134}, {3, 133}, {6, 132}, {12, 131}, {20, 130}, {24, 129}}};
  switch (rules) {
    case WaitRules::Birch:
      return kBirch;
    case WaitRules::Cedar:
      return kCedar;
    case WaitRules::Later:
      return kLaterRules;
    case WaitRules::Fixed:
      break;
  }
  return {};
}

}  // namespace

std::optional<BaudChoice> calculateBaud(const catalogue::FamilyTraits& traits, double clockHz, int fromRow,
                                        double maxBaud) {
  const double clock = static_cast<double>(platform::roundEven(clockHz));
  if (fromRow <= 0 || clock <= 0) return std::nullopt;
  const bool timer = traits.usesTimer();
  const std::span<const Variant> variants = timer ? std::span(&kTimer, 1) : std::span(kLater);
  for (int row = std::min(fromRow, 11); row >= 0; --row) {
    const int rate = kBaudRows[static_cast<std::size_t>(row)];
    if (rate > maxBaud) continue;
    for (const Variant& variant : variants) {
      const Candidate candidate = candidateOf(clock, variant.divisor, rate);
      if (isGood(timer, candidate)) return BaudChoice{row, rate, variant.mode, candidate.reload};
    }
  }
  return std::nullopt;
}

BaudParameters baudParameters(const catalogue::FamilyTraits& traits, const BaudChoice& choice) {
  if (choice.reload < 0) return {0, 1};
  const int value = 65536 - choice.reload;
  const auto low = static_cast<std::uint8_t>(value);
  if (!traits.usesTimer()) return {static_cast<std::uint8_t>(choice.mode), low};
  return {static_cast<std::uint8_t>(value >> 8), low};
}

int waitClass(const catalogue::FamilyTraits& traits, double clockHz, bool doubleSpeed) {
  const auto megahertz = platform::floorOf((doubleSpeed ? clockHz / 2 : clockHz) / 1000000 + 0.5);
  const auto bounds = boundsOf(traits.waits);
  const auto hit = std::find_if(bounds.begin(), bounds.end(), [&](const UpTo& b) { return megahertz <= b.megahertz; });
  return hit == bounds.end() ? 128 : hit->value;
}

std::uint8_t settleCount(catalogue::BaudPace pace, int connectBaud, BaudFrame frame, double rate, double clockHz) {
  struct Bound {
    int baud, birchTest, birchChange, others;
  };
  static constexpr std::array<Bound, 4> kBounds = {
      {{9600, 255, 255, 120}, {4800, 255, 255, 80}, {2400, 140, 140, 45}, {1200, 80, 90, 40}}};
  Bound bound = {0, 255, 255, 200};
  for (const Bound& row : kBounds)
    if (row.baud == connectBaud) bound = row;
  const int least = pace == BaudPace::Usual    ? bound.others
                    : frame == BaudFrame::Test ? bound.birchTest
                                               : bound.birchChange;
  std::int64_t settle = std::max<std::int64_t>(platform::roundEven(40 - 0.002 * rate), least);
  if (clockHz > 68000000) settle *= 2;
  return static_cast<std::uint8_t>(settle);
}

std::uint8_t fixedLinkTime(double clockHz) {
  const auto part = [&](double dividend) { return platform::floorOf(dividend / (clockHz * clockHz)); };
  if (clockHz <= 0) return 0;
  if (clockHz < 4000000) return static_cast<std::uint8_t>(part(180000000000000.0) + 23);
  if (clockHz < 14000000) return static_cast<std::uint8_t>(part(540000000000000.0) + 5);
  if (clockHz < 18432000) return static_cast<std::uint8_t>(part(850000000000000.0) + 2);
  if (clockHz < 20500000) return 4;
  return clockHz < 22200000 ? 3 : 2;
}

int switchDelayMs(catalogue::BaudPace pace, int connectBaud, BaudFrame frame) {
  struct Delay {
    int baud, birchTest, test, change;
  };
  static constexpr std::array<Delay, 4> kDelays = {
      {{9600, 20, 120, 20}, {4800, 40, 140, 40}, {2400, 20, 160, 60}, {1200, 20, 220, 120}}};
  Delay delay = {0, 30, 150, 120};
  for (const Delay& row : kDelays)
    if (row.baud == connectBaud) delay = row;
  if (frame == BaudFrame::Change) return pace == BaudPace::Birch ? 20 : delay.change;
  return pace == BaudPace::Birch ? delay.birchTest : delay.test;
}

int answerLimitMs(BaudFrame frame, double rate) {
  const bool test = frame == BaudFrame::Test;
  return std::max<int>(test ? 950 : 1200, static_cast<int>(platform::roundEven((test ? 300 : 800) - 0.008 * rate)));
}

ReloadPair reloadValues(BaudParameters parameters, bool doubleSpeed) {
  const ReloadBytes found = {parameters.high, parameters.low};
  const int count = 65536 - (parameters.high * 256 + parameters.low);
  if (doubleSpeed) return {bytesOf(65536 - platform::roundEven(count / 2.0)), found};
  return {found, bytesOf(65536 - 2 * count)};
}

}  // namespace kvr::engine
