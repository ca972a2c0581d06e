// The arithmetic of measuring and trimming the internal oscillator, as values.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engine/frames.h"

namespace kvr::engine {

inline constexpr int kNoRcResult = 255;
inline constexpr std::size_t kMostRcPoints = 13;

// One measured point: a pair of register values and what the oscillator does with it.
struct RcPoint {
  int code = 0;            // coarse register, 0..255; its two top bits choose the band
  int fine = 0;            // fine register, 0..255
  std::int32_t count = 0;  // measured, scaled to 1200 baud
  std::int64_t freq = 0;   // Hz; from 19200 baud on a garbled count makes more than 32 bits of it
  bool operator==(const RcPoint&) const = default;
};

// The straight line through two points of one band.
struct RcLine {
  RcPoint low, high;
  std::int64_t slope = 0;   // Hz a fine step; 0: the points make no line
  std::int64_t offset = 0;  // Hz at fine 0
  bool operator==(const RcLine&) const = default;
};
RcLine lineThrough(const RcPoint& low, const RcPoint& high);

struct RcLines {
  RcLine a, b, base;
};

struct RcResult {
  int bestIndex = kNoRcResult;
  RcPoint best;
  int errorCentiPercent = 10000;         // hundredths of a percent off the wanted frequency
  std::int64_t gapLow = 0, gapHigh = 0;  // Hz between which the oscillator cannot be set
  bool known() const { return bestIndex < 20; }
};

// The coarse code of a band, 0..3. The offset of the two upper bands is a trait of the family.
int bandCode(int upperBandOffset, int band);

// Codes and fine values of round one: two points each for the bands below and above the wanted frequency and for the
// base.
struct RcRegisters {
  std::uint8_t code = 0;
  std::uint8_t fine = 0;
  bool operator==(const RcRegisters&) const = default;
};
std::vector<RcRegisters> roundOne(int upperBandOffset, double wantedHz, bool base24MHz);

// Round two: a scan of `scanCount` fine steps round the value that the lines predict; empty when they predict none.
std::vector<RcRegisters> roundTwo(const RcLines& lines, double wantedHz, int scanCount);

// The gap that the points of round one leave round what was chosen.
void noteGap(const RcLines& lines, RcRegisters chosen, RcResult& result);

// The point nearest to the wanted frequency; `bestIndex` stays kNoRcResult without points.
void chooseBest(std::span<const RcPoint> points, double wantedHz, RcResult& result);

// By first-contact baud and wanted frequency.
struct RcPacing {
  int delayA, delayB;    // what the chip waits before it measures, rounds one and two
  int pulsesA, pulsesB;  // pulses that the host sends
};
RcPacing rcPacing(int connectBaud, double wantedHz);
int pulseSyncIntervalMs(int connectBaud);
int measureLimitMs(int connectBaud);

// 65: the seven bytes that the chip told, its delay, and the points to measure. Always a two-byte sum.
Bytes buildMeasureFrame(std::span<const std::uint8_t> statusTail, int delay, std::span<const RcRegisters> points);

// The seven bytes of the last frame of the handshake.
std::array<std::uint8_t, 7> baseSettings(const RcLine& base, double baseHz, double maxBaud);

}  // namespace kvr::engine
