#include "engine/rc_trim.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "engine/baud_plan.h"
#include "engine/status_frame.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr std::uint8_t kPulse = 0x7F, kTrail = 0xAA;
constexpr int kPulsesOfSync = 6;
constexpr int kPassCentiPercent = 25;
constexpr int kLengthWithoutPoints = 18;  // of a measure reply

double megahertz(std::int64_t hertz) {
  return static_cast<double>(hertz) / 1000000;
}

}  // namespace

void RcMeasuring::reset() {
  result_ = {};
  lines_ = {};
  c_.trim.reset();
}

double RcMeasuring::baseHz() const {
  return c_.room.baseFrequencyHz();
}

// A first frame of kind 80 asks for six pulses more; the clock is read from the frame that answers those.
void RcMeasuring::pulseSyncFirst() {
  TargetLink& link = c_.link;
  link.rx.armed = true;
  const Millis interval(pulseSyncIntervalMs(link.connectBaud()));
  while (!link.rx.frameOk && !link.stopRequested) {
    link.writeSync(kSyncBytes);
    (void)link.waitFrameCut(interval);
  }
  if (!link.rx.frameOk || link.rxByte(3) != 0x80) return;
  const Bytes frame = {0x46, 0xB9, 0x6A, 0x00, 0x07, 0x80, 0x00, 0xF1, 0x16};
  (void)sendMeasureFrame(frame, kPulsesOfSync, Millis(measureLimitMs(link.connectBaud())), 0);
}

bool RcMeasuring::sendMeasureFrame(const Bytes& frame, int pulseCount, Millis limit, int trailCount) {
  TargetLink& link = c_.link;
  link.clearReceiveState();
  link.rx.armed = true;
  link.write(frame);
  link.delayMs(Millis(20));
  sendPulses(kPulse, pulseCount);
  if (trailCount > 0) sendPulses(kTrail, trailCount);
  if (link.waitFrame(limit)) return true;
  if (!link.stopRequested) c_.failNow(2, "Connection failed.");
  return false;
}

// As many bytes as one takes at 1200 baud, every 10 ms: the chip sees the same pace at every rate.
void RcMeasuring::sendPulses(std::uint8_t value, int count) {
  const int chunk = std::max(baudUnits(c_.link.connectBaud()), 1);
  for (int left = count; left > 0 && !c_.link.stopRequested; left -= chunk) {
    c_.link.write(Bytes(static_cast<std::size_t>(std::min(left, chunk)), value));
    c_.link.delayMs(Millis(10));
  }
}

bool RcMeasuring::measureRound(const Bytes& frame, int pulseCount) {
  const Millis limit(measureLimitMs(c_.link.connectBaud()));
  const bool came = sendMeasureFrame(frame, pulseCount, limit, 0);
  if (c_.stopped()) return false;
  return came;
}

std::vector<RcPoint> RcMeasuring::readPoints() const {
  const auto rx = c_.rx();
  const int units = baudUnits(c_.link.connectBaud());
  const std::int64_t factor = clockFactor(c_.link.connectBaud());
  const auto held = static_cast<std::size_t>(std::max(c_.link.rx.length() - kLengthWithoutPoints, 0)) / 4;
  std::vector<RcPoint> points(std::min({std::size_t{rx[14]}, held, kMostRcPoints}));
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::size_t at = 4 * i + 15;
    const std::int32_t count = (rx[at + 2] * 256 + rx[at + 3]) * units;
    points[i] = {rx[at], rx[at + 1], count, (count + 6) * factor};
  }
  return points;
}

bool RcMeasuring::measureRc(int scanCount) {
  const double wantedHz = c_.room.wantedFrequencyHz();
  const RcPacing pacing = rcPacing(c_.link.connectBaud(), wantedHz);
  const bool base24 = baseHz() > 12000000;
  lines_ = {};
  lines_.base.low.code = lines_.base.high.code = bandCode(c_.traits().upperBandOffset, base24 ? 2 : 1);
  const auto first = roundOne(c_.traits().upperBandOffset, wantedHz, base24);
  if (!measureRound(buildMeasureFrame(c_.target.statusTail, pacing.delayA, first), pacing.pulsesA)) return false;
  const auto points = readPoints();
  if (c_.link.rxByte(3) != 0x65 || points.size() < 6) return true;
  lines_ = {lineThrough(points[0], points[1]), lineThrough(points[2], points[3]), lineThrough(points[4], points[5])};
  const auto scan = roundTwo(lines_, wantedHz, scanCount);
  if (scan.empty()) return true;
  noteGap(lines_, scan.front(), result_);
  if (!measureRound(buildMeasureFrame(c_.target.statusTail, pacing.delayB, scan), pacing.pulsesB)) return false;
  if (c_.link.rxByte(3) != 0x65) return true;
  chooseBest(readPoints(), wantedHz, result_);
  if (result_.known())
    c_.trim =
        options::RcTrim{static_cast<std::uint8_t>(result_.best.code), static_cast<std::uint8_t>(result_.best.fine)};
  return true;
}

bool RcMeasuring::fixedRateBaud(std::string& baudOut) {
  TargetLink& link = c_.link;
  const std::string maxBaud = link.maxBaudText();
  c_.target.statusTail = baseSettings(lines_.base, baseHz(), platform::valueOf(maxBaud));
  link.delayMs(Millis(30));
  Bytes payload(c_.target.statusTail.begin(), c_.target.statusTail.end());
  payload.push_back(static_cast<std::uint8_t>(waitClass(c_.traits(), baseHz(), c_.target.doubleSpeed)));
  payload.insert(payload.end(), {12, 0xFF, 0});
  link.write(buildFrame(0x8E, payload, SumForm::TwoBytes));
  link.delayMs(Millis(20));
  if (link.connectBaudText != maxBaud) {
    link.linkParityOn = c_.record().parityUsed;
    link.lease().close();
    (void)link.setMSCommSettings(maxBaud);
    (void)link.reopenIfClosed();
  }
  link.waitDrained();  // a line that stays open at a slow rate still has some of the frame to send
  link.clearReceiveState();
  const bool came = link.waitFrame(Millis(4200));
  baudOut = std::to_string(link.currentBaud());
  if (c_.stopped()) return false;
  return came || c_.failNow(2, "Connection failed.");
}

bool RcMeasuring::reportRcResult() {
  TargetLink& link = c_.link;
  if (result_.known()) {
    link.say("");
    link.say("Next time the R/C frequency: " + platform::fixedText(megahertz(result_.best.freq), 3) + "MHz");
    link.say("            Frequency error: " + platform::numberText(result_.errorCentiPercent / 100.0) + "%");
    if (std::abs(result_.errorCentiPercent) <= kPassCentiPercent) return true;
  }
  c_.fail(3, "The frequency of RC may be the film blind frequency within the MCU，");
  link.say("Frequency range can not be covered:" + platform::numberText(megahertz(result_.gapLow)) + " - " +
           platform::numberText(megahertz(result_.gapHigh)) + "MHz");
  return false;
}

}  // namespace kvr::engine
