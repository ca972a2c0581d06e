#include "engine/rc_plan.h"

#include <algorithm>
#include <cmath>

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr std::size_t kColumns = 7;
using Table = std::array<std::uint8_t, 4 * kColumns>;  // rows: 1200, 2400, 4800, 9600

constexpr Table kDelayA = {16, 16, 20, 14, 12, 18, 12,  //
                           6,  6,  8,  6,  6,  6,  6,   //
                           6,  6,  6,  8,  6,  6,  6,   //
                           6,  6,  6,  6,  12, 12, 12};
constexpr Table kDelayB = {32, 32, 20, 24, 12, 10, 22,  //
                           22, 20, 10, 12, 10, 10, 8,   //
                           24, 10, 10, 30, 30, 28, 24,  //
                           22, 65, 10, 30, 10, 32, 28};
constexpr Table kPulsesA = {34, 34, 32, 26, 26, 26, 23,  //
                            22, 22, 20, 18, 15, 15, 15,  //
                            22, 22, 22, 24, 18, 15, 15,  //
                            22, 22, 22, 22, 22, 22, 20};
constexpr Table kPulsesB = {70, 60, 50, 42, 34, 34, 31,  //
                            68, 50, 50, 36, 30, 30, 24,  //
                            68, 50, 50, 45, 42, 42, 42,  //
                            90, 85, 42, 42, 42, 42, 42};
constexpr int kOtherBaud = 255;

int at(const Table& table, int row, int column) {
  return row > 3 ? kOtherBaud : table[static_cast<std::size_t>(row) * kColumns + static_cast<std::size_t>(column)];
}

int columnOf(double wantedHz) {
  constexpr std::array<double, 6> kBounds = {6e6, 8.4e6, 12e6, 17e6, 24e6, 34e6};
  return static_cast<int>(std::upper_bound(kBounds.begin(), kBounds.end(), wantedHz) - kBounds.begin());
}

struct Bands {
  int a, b;
};
Bands bandsFor(double wantedHz) {
  const auto kHz = platform::roundEven(wantedHz / 1000);
  if (kHz <= 7500) return {0, 0};
  if (kHz <= 10000) return {0, 1};
  if (kHz <= 15000) return {1, 1};
  if (kHz <= 21000) return {1, 2};
  return kHz <= 31000 ? Bands{2, 2} : Bands{3, 3};
}

RcRegisters registers(int code, int fine) {
  return {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(fine)};
}

// The line whose measured points come nearest to the wanted frequency; the first wins a tie.
const RcLine& nearestLine(const RcLines& lines, double wantedHz) {
  const std::array<const RcPoint*, 4> points = {&lines.a.low, &lines.a.high, &lines.b.low, &lines.b.high};
  const auto nearest = std::min_element(points.begin(), points.end(), [&](const RcPoint* x, const RcPoint* y) {
    return std::abs(x->freq - wantedHz) < std::abs(y->freq - wantedHz);
  });
  return nearest - points.begin() < 2 ? lines.a : lines.b;
}

}  // namespace

RcLine lineThrough(const RcPoint& low, const RcPoint& high) {
  RcLine line{.low = low, .high = high, .offset = low.freq};
  if (high.fine == low.fine) return line;
  line.slope = platform::roundEven(static_cast<double>(high.freq - low.freq) / (high.fine - low.fine));
  line.offset = low.freq - line.slope * low.fine;
  return line;
}

int bandCode(int upperBandOffset, int band) {
  return band * 64 + (band >= 2 ? upperBandOffset : 24);
}

std::vector<RcRegisters> roundOne(int upperBandOffset, double wantedHz, bool base24MHz) {
  const Bands bands = bandsFor(wantedHz);
  const auto code = [&](int band) { return bandCode(upperBandOffset, band); };
  const int a = code(bands.a), b = code(bands.b), base = code(base24MHz ? 2 : 1);
  const bool top = (b & 0xC0) == 0xC0;
  if (a == b)
    return {registers(a, 0),    registers(a, 0x80),   registers(b, 0x80), registers(b, top ? 0xA0 : 0xFF),
            registers(base, 0), registers(base, 0x80)};
  return {registers(a, 0x80), registers(a, 0xFF), registers(b, 0),
          registers(b, 0x80), registers(base, 0), registers(base, 0x80)};
}

std::vector<RcRegisters> roundTwo(const RcLines& lines, double wantedHz, int scanCount) {
  const RcLine& line = nearestLine(lines, wantedHz);
  if (line.slope == 0) return {};
  auto fine = std::clamp<std::int64_t>(platform::floorOf((wantedHz - line.offset) / line.slope), 0, 255);
  fine = std::max<std::int64_t>(fine - platform::roundEven(scanCount / 2.0), 0);
  if (fine + scanCount >= 255) fine = 256 - scanCount;
  std::vector<RcRegisters> points;
  for (int i = 0; i < scanCount; ++i) points.push_back(registers(line.low.code, static_cast<int>(fine) + i));
  return points;
}

void noteGap(const RcLines& lines, RcRegisters chosen, RcResult& result) {
  const bool lowest = chosen.code < 64 && chosen.fine < 128;
  result.gapLow = lowest ? 0 : lines.a.high.freq;
  result.gapHigh = lowest ? lines.a.low.freq : lines.b.low.freq;
}

void chooseBest(std::span<const RcPoint> points, double wantedHz, RcResult& result) {
  double distance = 19999999;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double here = std::abs(points[i].freq - wantedHz);
    if (here >= distance) continue;
    distance = here;
    result.bestIndex = static_cast<int>(i);
    result.best = points[i];
    result.errorCentiPercent = static_cast<int>(platform::roundEven((points[i].freq - wantedHz) / (wantedHz / 10000)));
  }
}

RcPacing rcPacing(int connectBaud, double wantedHz) {
  const int row = connectBaud == 1200   ? 0
                  : connectBaud == 2400 ? 1
                  : connectBaud == 4800 ? 2
                  : connectBaud == 9600 ? 3
                                        : 4;
  const int column = columnOf(wantedHz);
  return {at(kDelayA, row, column), at(kDelayB, row, column), at(kPulsesA, row, column), at(kPulsesB, row, column)};
}

int pulseSyncIntervalMs(int connectBaud) {
  switch (connectBaud) {
    case 1200:
      return 180;
    case 2400:
      return 90;
    case 4800:
      return 40;
    case 9600:
      return 20;
    case 14400:
      return 10;
    default:
      return 140;
  }
}

int measureLimitMs(int connectBaud) {
  switch (connectBaud) {
    case 1200:
      return 1500;
    case 2400:
      return 1250;
    case 4800:
      return 680;
    case 9600:
      return 70;
    case 14400:
      return 40;
    default:
      return 500;
  }
}

Bytes buildMeasureFrame(std::span<const std::uint8_t> statusTail, int delay, std::span<const RcRegisters> points) {
  constexpr std::uint8_t kBandGapDelay = 2;
  Bytes payload(statusTail.begin(), statusTail.end());
  payload.insert(payload.end(),
                 {0xFF, static_cast<std::uint8_t>(delay), 0xFF, static_cast<std::uint8_t>(points.size())});
  for (const RcRegisters& point : points) payload.insert(payload.end(), {point.code, point.fine, kBandGapDelay, 0});
  return buildFrame(0x65, payload, SumForm::TwoBytes);
}

std::array<std::uint8_t, 7> baseSettings(const RcLine& base, double baseHz, double maxBaud) {
  const auto byte = [](std::int64_t value) { return static_cast<std::uint8_t>(value); };
  const auto value = 65536 - platform::roundEven(0.01 / (12 / baseHz));  // 10 ms in ticks of twelve clocks
  std::int64_t fine = base.slope == 0 ? 64 : platform::floorOf((baseHz - base.offset) / base.slope);
  if (fine < 32 || fine > 128) fine = 64;
  const double freq = base.slope == 0 ? baseHz : static_cast<double>(fine * base.slope + base.offset);
  const auto divider = maxBaud > 0 ? platform::roundEven(freq / maxBaud) : 0;
  std::int64_t steps = divider / 100;
  if (steps != 0) ++steps;
  const auto count =
      steps != 0 ? platform::roundEven(static_cast<double>(divider) / static_cast<double>(steps)) : divider;
  return {byte(base.low.code), byte(fine), byte(steps), byte(256 - count), 53, byte(value >> 8), byte(value)};
}

}  // namespace kvr::engine
