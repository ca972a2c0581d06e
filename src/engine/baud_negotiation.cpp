#include "engine/baud_negotiation.h"

#include <algorithm>
#include <array>

namespace kvr::engine {
namespace {

constexpr int kCandidates = 4;
constexpr int kTries = 3;

}  // namespace

bool BaudNegotiation::failed() {
  return c_.failNow(3, "Connection failed. ");
}

bool BaudNegotiation::switchesSpeed() const {
  return c_.job.firstBaud != highestBaudOf(c_.job);
}

bool BaudNegotiation::searchAndChange(Contact& contact) {
  const auto choice = findCandidate(contact.chip);
  if (c_.stopped()) return false;
  if (!choice) return failed();
  c_.link.clearReceiveState();
  c_.link.delay(Millis(50));
  const bool changed = changeThreeTimes(contact.chip, *choice);
  if (c_.stopped()) return false;
  c_.link.clearReceiveState();
  if (!changed) return failed();
  const ReloadPair reload = reloadValues(baudParameters(c_.traits(), *choice), contact.chip.doubleSpeed);
  contact.chip.reloadNormal = reload.normal;
  contact.chip.reloadOther = reload.other;
  contact.baud = choice->baud;
  return true;
}

// When no rate can be made at all, one last test with parameters that mean no rate ends the search.
std::optional<BaudChoice> BaudNegotiation::findCandidate(const TargetInfo& chip) {
  BaudChoice choice{.baud = c_.job.firstBaud};
  int row = 100;
  for (int tries = 1; tries <= kCandidates && row > 0; ++tries) {
    if (const auto found = calculateBaud(c_.traits(), chip.targetClockHz, row, highestBaudOf(c_.job))) {
      choice = *found;
      row = found->row;
    } else {
      choice.reload = -1;
    }
    if (choice.reload <= 1) row = 0;
    if (!c_.link.reopenIfClosed()) return std::nullopt;
    c_.link.clearReceiveState();
    if (testThreeTimes(chip, choice)) return tries < kCandidates ? std::optional(choice) : std::nullopt;
    if (c_.link.stopped()) return std::nullopt;
    row = std::max(row - 1, 0);
  }
  return std::nullopt;
}

bool BaudNegotiation::testThreeTimes(const TargetInfo& chip, const BaudChoice& choice) {
  const BaudParameters parameters = baudParameters(c_.traits(), choice);
  c_.triesRate(choice.baud);
  for (int i = 0; i < kTries && !c_.link.stopped(); ++i) {
    c_.link.delay(Millis(50));
    if (test(chip, choice.baud, parameters)) return true;
    c_.note(Setback::RateRefused);
  }
  return false;
}

bool BaudNegotiation::changeThreeTimes(const TargetInfo& chip, const BaudChoice& choice) {
  const BaudParameters parameters = baudParameters(c_.traits(), choice);
  for (int i = 0; i < kTries && !c_.link.stopped(); ++i) {
    c_.link.delay(Millis(50));
    if (change(chip, choice.baud, parameters)) return true;
  }
  return false;
}

Bytes BaudNegotiation::baudFrame(const TargetInfo& chip, BaudFrame kind, int baud, BaudParameters parameters) const {
  const bool test = kind == BaudFrame::Test;
  const double clock = chip.targetClockHz;
  const int twice = (256 - parameters.low) * 2;
  const std::uint8_t settle = test && c_.job.fixedLink
                                  ? fixedLinkTime(chip.doubleSpeed ? clock / 2 : clock)
                                  : settleCount(c_.traits().pace, c_.job.firstBaud, kind, baud, clock);
  Bytes payload = {parameters.high, parameters.low, 0xFF,
                   static_cast<std::uint8_t>(twice > 254 ? (test ? 254 : 255) : twice), settle};
  if (test) payload.push_back(static_cast<std::uint8_t>(waitClass(c_.traits(), clock, chip.doubleSpeed)));
  return buildFrame(test ? 0x8F : 0x8E, payload, c_.form());
}

bool BaudNegotiation::goTo(int baud) {
  c_.link.setParity(c_.record().parityUsed);
  return c_.link.changeBaud(baud);
}

bool BaudNegotiation::test(const TargetInfo& chip, int baud, BaudParameters parameters) {
  TargetLink& link = c_.link;
  link.clearReceiveState();
  if (!link.reopenIfClosed()) return false;
  link.delay(Millis(5));
  link.clearReceived();
  link.writeFrame(baudFrame(chip, BaudFrame::Test, baud, parameters));
  link.delay(Millis(switchDelayMs(c_.traits().pace, c_.job.firstBaud, BaudFrame::Test)), why::kRateUnderTest);
  const Millis limit(answerLimitMs(BaudFrame::Test, baud));
  if (!switchesSpeed() || c_.job.fixedLink) return link.awaitFrame(limit).has_value();
  const std::string firstContact = link.settings();
  const bool answered = goTo(baud) && link.awaitFrame(limit);
  return link.changeSettings(firstContact) && answered;
}

bool BaudNegotiation::change(const TargetInfo& chip, int baud, BaudParameters parameters) {
  TargetLink& link = c_.link;
  link.clearReceived();
  link.writeFrame(baudFrame(chip, BaudFrame::Change, baud, parameters));
  link.delay(Millis(switchDelayMs(c_.traits().pace, c_.job.firstBaud, BaudFrame::Change)), why::kNewRate);
  if (switchesSpeed() && !goTo(baud)) return false;
  return link.awaitFrame(Millis(answerLimitMs(BaudFrame::Change, baud))).has_value();
}

bool BaudNegotiation::announceWatchdog() {
  if (!c_.job.watchdogPin) return true;
  TargetLink& link = c_.link;
  if (!link.reopenIfClosed()) return false;
  const std::array<std::uint8_t, 1> payload = {*c_.job.watchdogPin};
  for (int i = 0; i < kTries && !link.stopped(); ++i) {
    link.clearReceiveState();
    link.delay(Millis(5));
    link.writeFrame(buildFrame(0x86, payload, c_.form()));
    link.delay(Millis(3));
    if (link.awaitFrame(Millis(500))) return true;
  }
  return false;
}

}  // namespace kvr::engine
