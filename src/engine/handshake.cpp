#include "engine/handshake.h"

#include <algorithm>

#include "engine/status_frame.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr Millis kHintAfter{4000};
constexpr Millis kPingLimit{200};
constexpr int kFirstTwoByteCode = 0xD1;
constexpr int kFixedLinkBaud = 115200;

// The row that the chip's code or its extended code names.
const catalogue::McuRecord* lookUp(const Reply& reply, TargetInfo& chip, const catalogue::McuRecord& selected) {
  chip.modelCodeHigh = platform::hexText(reply[23], 2);
  chip.modelCodeKnown = true;
  const catalogue::McuRecord* found = nullptr;
  if (reply.length() > 25) {
    if (reply[23] >= kFirstTwoByteCode) chip.modelCodeLow = platform::hexText(reply[24], 2);
    found = findTarget(chip.modelCode(), selected);
  }
  if (reply.length() > 58 && reply[55] > 0) {
    chip.extendedCodeText = platform::hexText(reply[55] * 256u + reply[56], 4);
    if (const auto* other = findTarget(chip.extendedCodeText, selected)) found = other;
  }
  return found;
}

}  // namespace

Handshake::Handshake(RunContext& context, OptionWrite& optionWrite)
    : c_(context), optionWrite_(optionWrite), rc_(context), baud_(context), hintTimer_(context.link.loop(), [this] {
        hint();
      }) {}

Learnt Handshake::run() {
  Learnt learnt;
  if (!meet(learnt, false)) return learnt;
  if (!c_.job.fixedLink) c_.say("We are trying to connect to target MCU again ... ");
  c_.stampStart();
  learnt.connected = secondStage(*learnt.contact);
  if (learnt.connected) c_.view().append(c_.elapsedText() + " )");
  return learnt;
}

Learnt Handshake::runReadOnly() {
  Learnt learnt;
  learnt.connected = meet(learnt, true);
  if (learnt.connected && !learnt.contact->chip.modelCodeKnown) readOptionsOnly(*learnt.contact);
  return learnt;
}

// First contact, clock and identity.
bool Handshake::meet(Learnt& learnt, bool readOnly) {
  if (!openUnpowered()) return false;
  const auto reply = firstContact();
  if (c_.stopped()) return false;
  if (!reply) return c_.fail(0, "Connection failed!");
  c_.enter(Stage::Identify);
  Contact& contact = learnt.contact.emplace();
  optionWrite_.compose(contact);
  readClock(*reply, contact.chip);
  if (reply->length() > 24) {
    if (!identify(*reply, contact)) return false;
    contact.optionsRead = readOnly;
    if (!readOnly && reply->length() > 25 && !checkModel(contact.chip)) return false;
  }
  readStatusByte(*reply, contact.chip);
  return true;
}

// The supply comes back at the end, and the call begins at once: boot firmware does not listen for long.
bool Handshake::openUnpowered() {
  const SupplyOff off(c_.link.port(), c_.job.power);
  if (!openPort()) return false;
  c_.enter(Stage::Wait);
  return restUnpowered();
}

// Silent: a chip without a supply would be fed by the data line.
bool Handshake::restUnpowered() {
  const PowerSwitch& power = c_.job.power;
  if (!power.line) return true;
  if (!c_.link.port().lineKept()) {
    c_.say("The port has no " + nameOf(*power.line) + " line to switch the power with.");
    return true;
  }
  c_.say("Power is off by " + nameOf(*power.line) + " for " + std::to_string(power.off.count()) + " ms.");
  if (c_.link.pause(power.off, why::kSupplyOff)) return true;
  c_.tellStop();
  return false;
}

bool Handshake::openPort() {
  TargetLink& link = c_.link;
  link.clearReceiveState();
  link.close();
  link.setParity(c_.record().parityUsed, c_.record().parityEven);
  if (link.setBaud(c_.job.firstBaud) || link.open()) return c_.failPort(3);
  link.clearQueues();
  c_.view().lamp(true);
  return true;
}

// Nothing: stopped, or the chip broke off. Without an answer the loops never end.
std::optional<Reply> Handshake::firstContact() {
  TargetLink& link = c_.link;
  link.clearReceiveState();  // a supply that goes and comes leaves marks on the line
  hintTimer_.start(kHintAfter);
  const bool fixed = c_.job.fixedLink;
  const auto reply = c_.traits().pulses() ? rc_.pulseSync() : fixed ? fixedLinkSync() : plainSync();
  hintTimer_.stop();
  if (!reply || link.stopped()) return std::nullopt;
  link.clearQueues();
  link.setParity(!fixed && c_.record().parityUsed);
  if (link.setBaud(fixed ? kFixedLinkBaud : c_.job.firstBaud)) return std::nullopt;
  return reply;
}

std::optional<Reply> Handshake::plainSync() {
  std::optional<Reply> reply;
  while (!reply && !c_.link.stopped()) {
    c_.link.writeSync(kSyncBytes);
    reply = c_.link.awaitFrameCut(Millis(10));
  }
  return reply;
}

std::optional<Reply> Handshake::fixedLinkSync() {
  TargetLink& link = c_.link;
  link.setParity(false);
  if (!link.changeBaud(kFixedLinkBaud)) return std::nullopt;
  link.clearReceiveState();
  std::optional<Reply> reply;
  while (!reply && !link.stopped() && link.isOpen()) {
    link.sendFixedLinkFrame(0x8A);
    reply = link.awaitFrameCut(Millis(100));
  }
  return reply;
}

void Handshake::readClock(const Reply& reply, TargetInfo& chip) {
  chip.fixedBaudLink = c_.job.fixedLink;
  chip.targetClockHz = c_.job.fixedLink ? clockFromFixedLink(reply.bytes)
                                        : clockFromStatus(reply.bytes, c_.job.firstBaud, c_.traits().pulses());
}

void Handshake::readIdentity(const Reply& reply, TargetInfo& chip) {
  const catalogue::McuRecord* found = lookUp(reply, chip, c_.record());
  chip.stepping = static_cast<char>(reply[21]);
  chip.firmware = catalogue::FirmwareVersion::fromByte(reply[20]);
  chip.targetModelName = found ? std::string(found->name) : std::string();
  chip.targetRecord = found ? *found : c_.record();
  if (!found) chip.targetRecord.name = {};  // a borrowed row must not pass for the chip's own
  const auto byLetter = catalogue::familyOf(chip.stepping);
  chip.family = found || !byLetter ? chip.targetRecord.family : *byLetter;
  c_.reportedCode = chip.modelCode();
}

// Firmwares up to letter "C" tell their options in one byte after the letter.
bool Handshake::identify(const Reply& reply, Contact& contact) {
  TargetInfo& chip = contact.chip;
  readIdentity(reply, chip);
  contact.options.reported = options::defaultBytes(c_.traits());
  readStatusOptions(reply.bytes, chip, contact.options.reported);
  options::refreshChoices(c_.traits(), contact.options);
  contact.optionsTold = contact.options.reported;
  if (c_.traits().measuresOscillator())
    std::copy_n(reply.bytes.begin() + 54, chip.statusTail.size(), chip.statusTail.begin());
  optionWrite_.report(contact, reply[20], reply[21], reply[22]);
  reportClock(contact);
  const int shortest = c_.link.parityOn() ? 58 : 57;
  if (reply.length() >= shortest && (reply[54] & 1)) return c_.fail(3, "IAP read MCU ID is error!");
  return true;
}

void Handshake::reportClock(const Contact& contact) {
  const TargetInfo& chip = contact.chip;
  const double hertz = chip.targetClockHz * (chip.clockDoubled > 0 ? 2.0 : 1.0);
  const auto line = [&](const char* words, double value) {
    c_.say(words + platform::numberText(value / 1000000) + "MHz.");
  };
  if (!chip.stepping.firstGeneration()) return line("MCU Clock:", hertz);
  line("Internal MCU Clock:", hertz);
  if (chip.stepping == 'B') return;
  const bool halved =
      chip.stepping == 'C' ? platform::valueOf(contact.options.reportedWords.doubleSpeed) > 0 : chip.doubleSpeed;
  line("External MCU Clock:", halved ? hertz / 2 : hertz);
}

bool Handshake::checkModel(const TargetInfo& chip) {
  if (modelFits(chip, c_.record(), c_.job.frameSize, c_.job.model.blockSize)) return true;
  modelRefused_ = true;
  return c_.fail(3, "MCU Type is incorrect. please select correct MCU type and open the file again.");
}

void Handshake::readStatusByte(const Reply& reply, TargetInfo& chip) {
  if (reply.length() <= 27 || chip.firmware <= catalogue::FirmwareVersion{2, 5}) return;
  c_.link.requireStartPair(reply[25] & 0x80);
  chip.reservedBytes = reservedBytesOf(c_.record(), reply[25]);
  chip.reservedKnown = true;
  chip.clockDoubled = (reply[25] >> 5) & 1;
}

void Handshake::readOptionsOnly(Contact& contact) {
  c_.link.clearQueues();
  c_.say("We are Reading options.");
  const bool read = optionWrite_.readPatiently(contact);
  if (c_.link.stopped()) c_.tellStop();
  if (!read) c_.failNow(3, "Connection failed. ");
}

bool Handshake::secondStage(Contact& contact) {
  if (!baud_.announceWatchdog()) return c_.stopped() ? false : c_.fail(3, "Connection failed.");
  c_.enter(Stage::Baud);
  if (c_.job.fixedLink && !testFixedLink(contact.chip)) return false;
  if (c_.record().extSession && !askStatusAgain()) return false;
  if (measuresOscillator(c_.job) && !rc_.measure(contact, 11)) return false;
  if (c_.job.fixedLink) {
    contact.baud = kFixedLinkBaud;
    return true;
  }
  if (c_.traits().measuresOscillator()) return rc_.goToFixedRate(contact);
  return baud_.searchAndChange(contact);
}

bool Handshake::testFixedLink(const TargetInfo& chip) {
  c_.link.clearReceiveState();
  bool passed = false;
  for (int i = 0; i < 3 && !passed && !c_.link.stopped(); ++i) passed = baud_.test(chip, kFixedLinkBaud, {});
  if (c_.stopped()) return false;
  return passed || c_.failNow(3, "Connection failed. ");
}

bool Handshake::askStatusAgain() {
  std::optional<Reply> reply;
  for (int i = 0; i < 3 && !reply && !c_.link.stopped(); ++i) {
    if (i > 0) c_.link.delay(Millis(200), why::kNoAnswer);
    reply = c_.link.exchange(buildGenericFrame(c_.record(), 0x50, 0, c_.reportedCode, c_.form()), Millis(300));
  }
  if (c_.stopped()) return false;
  if (reply && reply->command() == 0x8F) return true;
  return c_.failNow(2, reply ? "Connection failed. " : "Connection failed.");
}

void Handshake::ping() {
  c_.link.send(buildGenericFrame(c_.record(), 0x80, 0, c_.reportedCode, c_.form()), kPingLimit);
  if (c_.link.awaitFrame(kPingLimit)) return;
}

void Handshake::hint() {
  if (c_.link.stopped()) return;
  c_.view().beep(2);
  for (const char* line :
       {"Connection is failed. Please try:", " 1. Click ISP-Programmig button in Power-Down mode, ",
        "    then Power-Up", " 2. Stop programming, choose another RS-232 port,", "    check the connection line",
        " 3. Connect P1.0/P1.1 to ground, then supply target", "    MCU power.", " 4. Check external clock connection.",
        " 5. Update KVR-ISP.exe software", " 6. MCU might not have ISP code inside, ",
        "    or the MCU has been damaged.", " 7. If using USB-to-RS232 line, it might not",
        "    be compatible. We can help you buy a compatible", "    USB-to-RS232 line.", "",
        "        It is still in connection state,", "        please supply target MCU power..."})
    c_.say(line);
}

}  // namespace kvr::engine
