#include "engine/option_write.h"

#include <array>

#include "engine/option_plan.h"
#include "engine/status_frame.h"

namespace kvr::engine {

using catalogue::OptionLayout;

namespace {

constexpr catalogue::FirmwareVersion kOldestCompared{3, 2};  // older ones do not tell reliably what they hold
constexpr catalogue::FirmwareVersion kNewestWithoutWatchdog{3, 6};

}  // namespace

bool OptionWrite::readOptions() {
  TargetLink& link = c_.link;
  c_.run.optionsRead = false;
  (void)link.reopenTargetPort();
  const Bytes frame = buildFrame(0x50, {}, sumFormOf(c_.record()));
  for (int i = 0; i < 3 && !link.stopRequested; ++i) {
    link.clearReceiveState();
    if (i > 0) link.delayMs(Millis(50));
    if (sendAndWait(frame, Millis(900))) break;
  }
  c_.composeOptions();
  c_.options.reported[16] = c_.options.wanted[16];
  if (link.rx.frameOk) parseOptionStatus();
  return link.rx.frameOk;
}

void OptionWrite::parseOptionStatus() {
  const auto rx = c_.rx();
  c_.run.optionsRead = true;
  c_.target.firmware = catalogue::FirmwareVersion::fromByte(rx[11]);
  readAnsweredOptions(rx, c_.target, c_.traits().layout, c_.options.reported);
  if (!c_.target.tellsAllOptions() && c_.traits().layout >= OptionLayout::CedarByte) c_.room.refreshChoices();
  c_.composeOptions();
  c_.reportTarget(rx[11], rx[12], rx[13]);
}

bool OptionWrite::optionsFailed() {
  c_.link.rx.frameOk = false;
  return c_.fail(3, "Setting options failed!");
}

bool OptionWrite::optionsOk() {
  c_.link.say("Setting options OK. ");
  return true;
}

bool OptionWrite::nothingToWrite() {
  c_.run.optionsRead = true;
  c_.link.rx.frameOk = true;
  return true;
}

bool OptionWrite::sendAndWait(const Bytes& frame, Millis limit) {
  TargetLink& link = c_.link;
  link.rx.armed = true;
  link.delayMs(Millis(5));
  link.write(frame);
  link.waitDrained();
  link.delayMs(Millis(3));
  return link.waitFrame(limit);
}

// One pass of two attempts.
bool OptionWrite::sendTwice(const Bytes& frame, Millis limit) {
  for (int i = 0; i < 2 && !c_.link.stopRequested; ++i) {
    c_.link.clearReceiveState();
    if (sendAndWait(frame, limit)) return true;
  }
  return false;
}

// The same for a chip of the first generation: 80 says done, 81 asks for the frame anew, as often as it likes.
bool OptionWrite::sendUntilDone(const Bytes& frame, Millis limit) {
  for (int i = 0; i < 2 && !c_.link.stopRequested; ++i) {
    c_.link.clearReceiveState();
    if (!sendAndWait(frame, limit)) continue;
    if (c_.link.rxByte(3) == 0x80) return true;
    if (c_.link.rxByte(3) == 0x81) i = -1;
    c_.link.rx.frameOk = false;
  }
  return false;
}

bool OptionWrite::writeOptions() {
  const auto layout = c_.traits().layout;
  // Three of Rowan's bytes are not in the first status frame; what it does not tell cannot be taken for what is wanted.
  const bool allTold = layout != OptionLayout::Rowan || c_.run.optionsRead;
  c_.run.optionsRead = false;
  if (layout == OptionLayout::AlderByte) return writeAlder();
  if (layout == OptionLayout::CedarByte) return writeCedarLike();
  if (!writeLater(allTold)) return false;
  return layout != OptionLayout::Rowan || writeRowan();
}

bool OptionWrite::writeAlder() {
  const bool doubleSpeed = c_.room.chosen("Double_speed_YES");
  const std::array<std::uint8_t, 1> payload = {alderOptionByte(c_.record(), doubleSpeed)};
  const Bytes frame = buildFrame(0x8D, payload, sumFormOf(c_.record()));
  (void)c_.link.reopenTargetPort();
  bool taken = false;
  for (int i = 0; i < 3 && !taken && !c_.link.stopRequested; ++i) {
    c_.link.clearReceiveState();
    taken = sendAndWait(frame, Millis(50));
  }
  if (!taken || !readOptions()) return optionsFailed();
  if (doubleSpeed) c_.link.say("Lock Chip, set 6 Clocks OK.");
  c_.link.shared().textMsg.append(" (End: " + c_.link.timeOfDay() + ")");
  return true;
}

bool OptionWrite::writeCedarLike() {
  c_.composeOptions();
  if (cedarNeedsNoWrite(c_.options)) {
    (void)nothingToWrite();
    c_.link.endFixedLink();
    c_.link.rx.frameOk = true;
    return true;
  }
  const bool doubleSpeed = c_.options.wantedWords.doubleSpeed == "1";
  const ReloadBytes reload = doubleSpeed ? c_.target.reloadOther : c_.target.reloadNormal;
  const Bytes frame = buildCedarOptionFrame(c_.options.wanted, reload, sumFormOf(c_.record()));
  c_.link.clearReceiveState();
  (void)c_.link.reopenTargetPort();
  if (!sendTwice(frame, Millis(500)) && !sendTwice(frame, Millis(500))) return optionsFailed();
  if (!readOptions() || c_.options.reported[1] != c_.options.wanted[1]) return optionsFailed();
  return optionsOk();
}

bool OptionWrite::writeLater(bool allTold) {
  c_.composeOptions();
  const auto layout = c_.traits().layout;
  const int order = optionOrder(c_.target);
  const bool alwaysWrites = layout == OptionLayout::All;
  if (!alwaysWrites) {
    leaveWatchdogAlone();
    const bool laterOrder = order > 0 || isLateHazel(c_.target);
    if (allTold && runsFromExternalClock(layout, order, c_.options) &&
        optionsAgree(layout, laterOrder, Moment::BeforeWrite, c_.options))
      return nothingToWrite();
  }
  c_.link.clearReceiveState();
  (void)c_.link.reopenTargetPort();
  if (!sendLater() || !readBackLater()) return optionsFailed();
  const bool laterOrder = optionOrder(c_.target) > 0 || isLateHazel(c_.target);
  if (c_.target.tellsAllOptions()) {
    if (allOptionsAgree(c_.options)) return true;
    c_.run.optionsRead = false;
    return optionsFailed();
  }
  if (c_.target.firmware < kOldestCompared) return true;
  leaveWatchdogAlone();
  return optionsAgree(layout, laterOrder, Moment::AfterWrite, c_.options) ? optionsOk() : optionsFailed();
}

// Firmwares up to 3.6 have no watchdog byte.
void OptionWrite::leaveWatchdogAlone() {
  if (c_.target.firmware <= kNewestWithoutWatchdog) c_.options.wanted[3] = 255;
}

bool OptionWrite::sendLater() {
  constexpr Millis kLimit(2500);
  const Bytes frame =
      buildLaterOptionFrame(c_.traits().layout, c_.options.wanted, c_.target.targetClockHz, sumFormOf(c_.record()));
  for (int pass = 0; pass < 2; ++pass) {
    if (!c_.record().extSession) {
      if (sendUntilDone(frame, kLimit)) return true;
    } else if (sendTwice(frame, kLimit) && c_.link.rxByte(3) == 0x50) {
      return true;
    }
    c_.link.rx.frameOk = false;
  }
  return false;
}

// The later generation answers an option frame with what it then holds; the first one is asked.
bool OptionWrite::readBackLater() {
  if (!c_.record().extSession) return readOptions();
  c_.composeOptions();
  c_.options.reported[16] = c_.options.wanted[16];
  parseOptionStatus();
  return true;
}

bool OptionWrite::writeRowan() {
  constexpr Millis kLimit(500);
  c_.composeOptions();
  if ((c_.options.reported[3] & 2) && rowanOptionsAgree(c_.options)) {
    (void)nothingToWrite();
    c_.link.endFixedLink();
    c_.link.rx.frameOk = true;
    return true;
  }
  const Bytes frame = buildRowanOptionFrame(c_.options.wanted, c_.target.targetClockHz, sumFormOf(c_.record()));
  c_.link.clearReceiveState();
  (void)c_.link.reopenTargetPort();
  if (!sendUntilDone(frame, kLimit) && !sendUntilDone(frame, kLimit)) return optionsFailed();
  if (!readOptions()) return optionsFailed();
  if (c_.target.firmware < kOldestCompared) return true;
  return rowanOptionsAgree(c_.options) ? optionsOk() : optionsFailed();
}

}  // namespace kvr::engine
