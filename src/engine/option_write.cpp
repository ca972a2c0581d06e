#include "engine/option_write.h"

#include <array>

#include "engine/option_plan.h"
#include "engine/status_frame.h"
#include "options/target_report.h"

namespace kvr::engine {
namespace {

using catalogue::FirmwareVersion;
using catalogue::OptionLayout;

constexpr FirmwareVersion kOldestCompared{3, 2};  // older ones do not tell reliably what they hold
constexpr FirmwareVersion kNewestWithoutWatchdog{3, 6};

// The later order of the option bytes in a chip's answers and frames.
bool storesInLaterOrder(const TargetInfo& chip) {
  return optionOrder(chip) > 0 || isLateHazel(chip);
}

void leaveWatchdogAlone(Contact& contact) {
  if (contact.chip.firmware <= kNewestWithoutWatchdog) contact.options.wanted[3] = 255;
}

}  // namespace

void OptionWrite::compose(Contact& contact) const {
  const auto wanted = options::composeOptions(c_.job.choices, contact.trim);
  contact.options.wanted = wanted.bytes;
  contact.options.wantedWords = wanted.words;
}

void OptionWrite::report(Contact& contact, std::uint8_t status11, std::uint8_t status12, std::uint8_t status13) {
  TargetInfo& chip = contact.chip;
  const options::TargetReport told =
      options::describeTarget({.sizeUntold = c_.traits().tellsSize && !chip.reservedKnown,
                               .modelName = chip.targetModelName,
                               .firmware = chip.firmware,
                               .stepping = chip.stepping,
                               .reported = contact.options.reported,
                               .status11 = status11,
                               .status12 = status12,
                               .status13 = status13});
  for (const auto& line : told.lines) c_.say(line);
  if (told.labels) c_.view().chipLabels(*told.labels);
  if (told.clearStartPair) c_.link.requireStartPair(false);
  if (told.doubleSpeed) chip.doubleSpeed = *told.doubleSpeed;
}

// A short frame, such as a late "done", must not be read as if it told zeros.
bool OptionWrite::holdsOptions(const Contact& contact, const Reply& reply) const {
  TargetInfo chip = contact.chip;
  chip.firmware = FirmwareVersion::fromByte(reply[11]);
  const int trailer = c_.form() == SumForm::TwoBytes ? 3 : 2;
  return reply.length() > highestOptionIndex(chip, c_.traits().layout) + trailer;
}

bool OptionWrite::read(Contact& contact) {
  contact.optionsRead = false;
  if (!c_.link.reopen()) return false;
  const Bytes frame = buildFrame(0x50, {}, c_.form());
  std::optional<Reply> reply;
  for (int i = 0; i < 3 && !reply && !c_.link.stopped(); ++i) {
    c_.link.sendWithRoom(frame, Millis(i > 0 ? 55 : 5));
    reply = c_.link.awaitFrame(Millis(900), [&](const Reply& came) { return holdsOptions(contact, came); });
  }
  compose(contact);
  contact.options.reported[16] = contact.options.wanted[16];
  if (reply) parse(contact, *reply);
  return reply.has_value();
}

bool OptionWrite::readPatiently(Contact& contact) {
  constexpr int kReads = 4;
  for (int i = 0; i < kReads && !c_.link.stopped(); ++i)
    if (read(contact)) return true;
  return false;
}

void OptionWrite::parse(Contact& contact, const Reply& reply) {
  contact.optionsRead = true;
  contact.chip.firmware = FirmwareVersion::fromByte(reply[11]);
  const OptionLayout layout = c_.traits().layout;
  readAnsweredOptions(reply.bytes, contact.chip, layout, contact.options.reported);
  if (!contact.chip.tellsAllOptions() && layout >= OptionLayout::CedarByte)
    options::refreshChoices(c_.traits(), contact.options);
  compose(contact);
  report(contact, reply[11], reply[12], reply[13]);
}

bool OptionWrite::failed() {
  return c_.fail(3, "Setting options failed!");
}

bool OptionWrite::done() {
  c_.say("Setting options OK. ");
  return true;
}

std::optional<Reply> OptionWrite::sendAndWait(const Bytes& frame, Millis limit) {
  c_.link.sendWithRoom(frame);
  return c_.link.awaitFrame(limit);
}

// One pass of two attempts.
std::optional<Reply> OptionWrite::sendTwice(const Bytes& frame, Millis limit) {
  for (int i = 0; i < 2 && !c_.link.stopped(); ++i)
    if (auto reply = sendAndWait(frame, limit)) return reply;
  return std::nullopt;
}

// The same for a chip of the first generation: 80 says done, 81 asks for the frame anew, as often as it likes.
bool OptionWrite::sendUntilDone(const Bytes& frame, Millis limit) {
  for (int i = 0; i < 2 && !c_.link.stopped(); ++i) {
    const auto reply = sendAndWait(frame, limit);
    if (!reply) continue;
    if (reply->command() == 0x80) return true;
    if (reply->command() == 0x81) i = -1;
  }
  return false;
}

bool OptionWrite::write(Contact& contact) {
  const OptionLayout layout = c_.traits().layout;
  // Three of Rowan's bytes are not in the first status frame; what it does not tell cannot be taken for what is wanted.
  const bool allTold = layout != OptionLayout::Rowan || contact.optionsRead;
  contact.optionsRead = false;
  compose(contact);
  if (layout == OptionLayout::AlderByte) return writeAlder(contact);
  if (layout == OptionLayout::CedarByte) return writeCedarLike(contact);
  if (!writeLater(contact, allTold)) return false;
  return layout != OptionLayout::Rowan || writeRowan(contact);
}

bool OptionWrite::writeAlder(Contact& contact) {
  const bool doubleSpeed = c_.job.doubleSpeed;
  const std::array<std::uint8_t, 1> payload = {alderOptionByte(c_.record(), doubleSpeed)};
  const Bytes frame = buildFrame(0x8D, payload, c_.form());
  if (!c_.link.reopen()) return failed();
  bool taken = false;
  for (int i = 0; i < 3 && !taken && !c_.link.stopped(); ++i) taken = sendAndWait(frame, Millis(50)).has_value();
  if (!taken || !read(contact)) return failed();
  if (doubleSpeed) c_.say("Lock Chip, set 6 Clocks OK.");
  c_.view().append(" (End: " + c_.timeOfDay() + ")");
  return true;
}

bool OptionWrite::writeCedarLike(Contact& contact) {
  if (cedarNeedsNoWrite(contact.options)) {
    contact.optionsRead = true;
    c_.link.endSession();
    return true;
  }
  const bool doubleSpeed = contact.options.wantedWords.doubleSpeed == "1";
  const ReloadBytes reload = doubleSpeed ? contact.chip.reloadOther : contact.chip.reloadNormal;
  const Bytes frame = buildCedarOptionFrame(contact.options.wanted, reload, c_.form());
  c_.link.clearReceiveState();
  if (!c_.link.reopen()) return failed();
  if (!sendTwice(frame, Millis(500)) && !sendTwice(frame, Millis(500))) return failed();
  if (!read(contact) || contact.options.reported[1] != contact.options.wanted[1]) return failed();
  return done();
}

bool OptionWrite::writeLater(Contact& contact, bool allTold) {
  const OptionLayout layout = c_.traits().layout;
  const int order = optionOrder(contact.chip);
  const bool alwaysWrites = layout == OptionLayout::All;
  if (!alwaysWrites) {
    leaveWatchdogAlone(contact);
    if (allTold && runsFromExternalClock(layout, order, contact.options) &&
        optionsAgree(layout, storesInLaterOrder(contact.chip), Moment::BeforeWrite, contact.options)) {
      contact.optionsRead = true;
      return true;
    }
  }
  c_.link.clearReceiveState();
  if (!c_.link.reopen()) return failed();
  if (!sendLater(contact)) return failed();
  if (contact.chip.tellsAllOptions()) return allOptionsAgree(contact.options) || failed();
  if (contact.chip.firmware < kOldestCompared) return true;
  leaveWatchdogAlone(contact);
  return optionsAgree(layout, storesInLaterOrder(contact.chip), Moment::AfterWrite, contact.options) ? done()
                                                                                                     : failed();
}

// The later generation answers an option frame with what it then holds; the first one is asked.
bool OptionWrite::sendLater(Contact& contact) {
  constexpr Millis kLimit(2500);
  const Bytes frame =
      buildLaterOptionFrame(c_.traits().layout, contact.options.wanted, contact.chip.targetClockHz, c_.form());
  for (int pass = 0; pass < 2; ++pass) {
    if (!c_.record().extSession) {
      if (sendUntilDone(frame, kLimit)) return read(contact);
      continue;
    }
    const auto reply = sendTwice(frame, kLimit);
    if (!reply || reply->command() != 0x50 || !holdsOptions(contact, *reply)) continue;
    compose(contact);
    contact.options.reported[16] = contact.options.wanted[16];
    parse(contact, *reply);
    return true;
  }
  return false;
}

bool OptionWrite::writeRowan(Contact& contact) {
  constexpr Millis kLimit(500);
  compose(contact);
  if ((contact.options.reported[3] & 2) && rowanOptionsAgree(contact.options)) {
    contact.optionsRead = true;
    c_.link.endSession();
    return true;
  }
  const Bytes frame = buildRowanOptionFrame(contact.options.wanted, contact.chip.targetClockHz, c_.form());
  c_.link.clearReceiveState();
  if (!c_.link.reopen()) return failed();
  if (!sendUntilDone(frame, kLimit) && !sendUntilDone(frame, kLimit)) return failed();
  if (!read(contact)) return failed();
  if (contact.chip.firmware < kOldestCompared) return true;
  return rowanOptionsAgree(contact.options) ? done() : failed();
}

}  // namespace kvr::engine
