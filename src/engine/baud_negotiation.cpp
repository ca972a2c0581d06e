#include "engine/baud_negotiation.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr int kCandidates = 4;
constexpr int kAttempts = 3;

}  // namespace

bool BaudNegotiation::failed() {
  return c_.failNow(3, "Connection failed. ");
}

bool BaudNegotiation::switchesSpeed() const {
  return c_.link.connectBaudText != c_.link.maxBaudText();
}

bool BaudNegotiation::searchAndChange(std::string& baudOut) {
  const auto choice = findCandidate();
  if (c_.stopped()) return false;
  if (!choice) return failed();
  const BaudParameters parameters = baudParameters(c_.traits(), *choice);
  c_.link.clearReceiveState();
  c_.link.delayMs(Millis(50));
  const bool changed = changeThreeTimes(*choice);
  if (c_.stopped()) return false;
  c_.link.clearReceiveState();
  if (!changed) return failed();
  const ReloadPair reload = reloadValues(parameters, c_.target.doubleSpeed);
  c_.target.reloadNormal = reload.normal;
  c_.target.reloadOther = reload.other;
  baudOut = std::to_string(choice->baud);
  return true;
}

// When no rate can be made at all, one last test with parameters that stand for no rate ends the search.
std::optional<BaudChoice> BaudNegotiation::findCandidate() {
  BaudChoice choice{.baud = c_.link.connectBaud()};
  const double maxBaud = platform::valueOf(c_.link.maxBaudText());
  int row = 100;
  for (int tries = 1; tries <= kCandidates && row > 0; ++tries) {
    if (const auto found = calculateBaud(c_.traits(), c_.target.targetClockHz, row, maxBaud)) {
      choice = *found;
      row = found->row;
    } else {
      choice.reload = -1;
    }
    if (choice.reload <= 1) row = 0;
    (void)c_.link.reopenIfClosed();
    c_.link.clearReceiveState();
    if (testThreeTimes(choice)) return tries < kCandidates ? std::optional(choice) : std::nullopt;
    if (c_.link.stopRequested) return std::nullopt;
    row = std::max(row - 1, 0);
  }
  return std::nullopt;
}

bool BaudNegotiation::testThreeTimes(const BaudChoice& choice) {
  const BaudParameters parameters = baudParameters(c_.traits(), choice);
  for (int i = 0; i < kAttempts && !c_.link.stopRequested; ++i) {
    c_.link.delayMs(Millis(50));
    if (test_new_baud(choice.baud, parameters)) return true;
  }
  return false;
}

bool BaudNegotiation::changeThreeTimes(const BaudChoice& choice) {
  const BaudParameters parameters = baudParameters(c_.traits(), choice);
  for (int i = 0; i < kAttempts && !c_.link.stopRequested; ++i) {
    c_.link.delayMs(Millis(50));
    if (set_new_baud(choice.baud, parameters)) return true;
  }
  return false;
}

Bytes BaudNegotiation::baudFrame(BaudFrame kind, int baud, BaudParameters parameters) const {
  const bool test = kind == BaudFrame::Test;
  const double clock = c_.target.targetClockHz;
  const bool fixed = c_.link.panel().cheTL.value();
  const int twice = (256 - parameters.low) * 2;
  const std::uint8_t settle = test && fixed ? fixedLinkTime(c_.target.doubleSpeed ? clock / 2 : clock)
                                            : settleCount(c_.traits().pace, c_.link.connectBaud(), kind, baud, clock);
  Bytes payload = {parameters.high, parameters.low, 0xFF,
                   static_cast<std::uint8_t>(twice > 254 ? (test ? 254 : 255) : twice), settle};
  if (test) payload.push_back(static_cast<std::uint8_t>(waitClass(c_.traits(), clock, c_.target.doubleSpeed)));
  return buildFrame(test ? 0x8F : 0x8E, payload, sumFormOf(c_.record()));
}

bool BaudNegotiation::goTo(int baud) {
  c_.link.lease().close();
  if (c_.link.stopRequested) return false;
  c_.link.linkParityOn = c_.record().parityUsed;
  if (c_.link.setMSCommSettings(std::to_string(baud))) return false;
  return !c_.link.reopenIfClosed();
}

bool BaudNegotiation::test_new_baud(int baud, BaudParameters parameters) {
  TargetLink& link = c_.link;
  link.clearReceiveState();
  (void)link.reopenIfClosed();
  link.delayMs(Millis(5));
  link.rx.armed = true;
  link.rx.clear();
  link.write(baudFrame(BaudFrame::Test, baud, parameters));
  link.delayMs(Millis(switchDelayMs(c_.traits().pace, link.connectBaud(), BaudFrame::Test)));
  const bool switches = switchesSpeed() && !link.panel().cheTL.value();
  const std::string firstContact = link.lease().link().settings();
  if (!switches || goTo(baud)) (void)link.waitFrame(Millis(answerLimitMs(BaudFrame::Test, baud)));
  if (switches) (void)link.changeSettings(firstContact);
  return link.rx.frameOk;
}

bool BaudNegotiation::set_new_baud(int baud, BaudParameters parameters) {
  TargetLink& link = c_.link;
  link.rx.clear();
  link.write(baudFrame(BaudFrame::Change, baud, parameters));
  link.delayMs(Millis(switchDelayMs(c_.traits().pace, link.connectBaud(), BaudFrame::Change)));
  if (switchesSpeed()) (void)goTo(baud);
  (void)link.waitFrame(Millis(answerLimitMs(BaudFrame::Change, baud)));
  return link.rx.frameOk;
}

bool BaudNegotiation::send_extern_WDT_address() {
  const auto pin = c_.room.externalWatchdogPin();
  if (!pin) return true;
  TargetLink& link = c_.link;
  (void)link.reopenIfClosed();
  const std::array<std::uint8_t, 1> payload = {*pin};
  for (int i = 0; i < kAttempts && !link.stopRequested; ++i) {
    link.clearReceiveState();
    link.delayMs(Millis(5));
    link.write(buildFrame(0x86, payload, sumFormOf(c_.record())));
    link.delayMs(Millis(3));
    if (link.waitFrame(Millis(500))) return true;
  }
  return false;
}

}  // namespace kvr::engine
