#include "engine/rc_trim.h"

#include <algorithm>
#include <cstdlib>

#include "engine/baud_plan.h"
#include "engine/status_frame.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr std::uint8_t kPulse = 0x7F;
constexpr int kPulsesOfSync = 6;
constexpr int kPassCentiPercent = 25;
constexpr int kLengthWithoutPoints = 18;  // of a measure reply

double megahertz(std::int64_t hertz) {
  return static_cast<double>(hertz) / 1000000;
}

}  // namespace

// A first frame of kind 80 asks for six pulses more; the clock is read from the frame that answers those.
std::optional<Reply> RcMeasuring::pulseSync() {
  TargetLink& link = c_.link;
  const Millis interval(pulseSyncIntervalMs(c_.job.firstBaud));
  std::optional<Reply> reply;
  while (!reply && !link.stopped()) {
    link.writeSync(kSyncBytes);
    reply = link.awaitFrameCut(interval);
  }
  if (!reply || reply->command() != 0x80) return reply;
  const Bytes frame = {0x46, 0xB9, 0x6A, 0x00, 0x07, 0x80, 0x00, 0xF1, 0x16};
  return sendMeasureFrame(frame, kPulsesOfSync, Millis(measureLimitMs(c_.job.firstBaud)));
}

std::optional<Reply> RcMeasuring::sendMeasureFrame(const Bytes& frame, int pulseCount, Millis limit) {
  TargetLink& link = c_.link;
  link.beginFrame();
  link.write(frame);
  link.delay(Millis(20));
  sendPulses(pulseCount);
  auto reply = link.awaitFrame(limit);
  if (!reply && !link.stopped()) c_.failNow(2, "Connection failed.");
  return reply;
}

// As many bytes as one takes at 1200 baud, every 10 ms: the chip sees the same pace at every rate.
void RcMeasuring::sendPulses(int count) {
  const int chunk = std::max(baudUnits(c_.job.firstBaud), 1);
  for (int left = count; left > 0 && !c_.link.stopped(); left -= chunk) {
    c_.link.write(Bytes(static_cast<std::size_t>(std::min(left, chunk)), kPulse));
    c_.link.delay(Millis(10));
  }
}

std::optional<Reply> RcMeasuring::measureRound(const Bytes& frame, int pulseCount) {
  auto reply = sendMeasureFrame(frame, pulseCount, Millis(measureLimitMs(c_.job.firstBaud)));
  if (c_.stopped()) return std::nullopt;
  return reply;
}

std::vector<RcPoint> RcMeasuring::readPoints(const Reply& reply) const {
  const int units = baudUnits(c_.job.firstBaud);
  const std::int64_t factor = clockFactor(c_.job.firstBaud);
  const auto held = static_cast<std::size_t>(std::max(reply.length() - kLengthWithoutPoints, 0)) / 4;
  std::vector<RcPoint> points(std::min({std::size_t{reply[14]}, held, kMostRcPoints}));
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::size_t at = 4 * i + 15;
    const std::int32_t count = (reply[at + 2] * 256 + reply[at + 3]) * units;
    points[i] = {reply[at], reply[at + 1], count, (count + 6) * factor};
  }
  return points;
}

bool RcMeasuring::measure(Contact& contact, int scanCount) {
  const double wantedHz = c_.job.wantedFrequencyHz;
  const int offset = c_.traits().upperBandOffset;
  const RcPacing pacing = rcPacing(c_.job.firstBaud, wantedHz);
  const bool base24 = c_.job.baseFrequencyHz > 12000000;
  const auto& tail = contact.chip.statusTail;
  lines_ = {};
  lines_.base.low.code = lines_.base.high.code = bandCode(offset, base24 ? 2 : 1);
  const auto first =
      measureRound(buildMeasureFrame(tail, pacing.delayA, roundOne(offset, wantedHz, base24)), pacing.pulsesA);
  if (!first) return false;
  const auto points = readPoints(*first);
  if (first->command() != 0x65 || points.size() < 6) return true;
  lines_ = {lineThrough(points[0], points[1]), lineThrough(points[2], points[3]), lineThrough(points[4], points[5])};
  const auto scan = roundTwo(lines_, wantedHz, scanCount);
  if (scan.empty()) return true;
  noteGap(lines_, scan.front(), contact.rc);
  const auto second = measureRound(buildMeasureFrame(tail, pacing.delayB, scan), pacing.pulsesB);
  if (!second) return false;
  if (second->command() != 0x65) return true;
  chooseBest(readPoints(*second), wantedHz, contact.rc);
  if (contact.rc.known())
    contact.trim = options::RcTrim{static_cast<std::uint8_t>(contact.rc.best.code),
                                   static_cast<std::uint8_t>(contact.rc.best.fine)};
  return true;
}

bool RcMeasuring::goToFixedRate(Contact& contact) {
  TargetLink& link = c_.link;
  const int baud = highestBaudOf(c_.job);
  c_.triesRate(baud);
  const double base = c_.job.baseFrequencyHz;
  contact.chip.statusTail = baseSettings(lines_.base, base, baud);
  link.delay(Millis(30));
  Bytes payload(contact.chip.statusTail.begin(), contact.chip.statusTail.end());
  payload.push_back(static_cast<std::uint8_t>(waitClass(c_.traits(), base, contact.chip.doubleSpeed)));
  payload.insert(payload.end(), {12, 0xFF, 0});
  link.writeFrame(buildFrame(0x8E, payload, SumForm::TwoBytes));
  link.delay(Millis(20));
  if (c_.job.firstBaud != baud) {
    link.setParity(c_.record().parityUsed);
    if (!link.changeBaud(baud)) return c_.stopped() ? false : c_.failNow(2, "Connection failed.");
  }
  link.drain();  // a line that stays open at a slow rate still has some of the frame to send
  link.clearReceiveState();
  const bool came = link.awaitFrame(Millis(4200)).has_value();
  contact.baud = link.currentBaud();
  if (c_.stopped()) return false;
  return came || c_.failNow(2, "Connection failed.");
}

bool reportTrim(RunContext& c, const RcResult& result) {
  if (result.known()) {
    c.say("");
    c.say("Next time the R/C frequency: " + platform::fixedText(megahertz(result.best.freq), 3) + "MHz");
    c.say("            Frequency error: " + platform::numberText(result.errorCentiPercent / 100.0) + "%");
    if (std::abs(result.errorCentiPercent) <= kPassCentiPercent) return true;
  }
  c.fail(3, "The frequency of RC may be the film blind frequency within the MCU，");
  c.say("Frequency range can not be covered:" + platform::numberText(megahertz(result.gapLow)) + " - " +
        platform::numberText(megahertz(result.gapHigh)) + "MHz");
  return false;
}

}  // namespace kvr::engine
