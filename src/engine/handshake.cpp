#include "engine/handshake.h"

#include <array>

#include "engine/status_frame.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr Millis kHintAfter{4000};
constexpr int kFirstTwoByteCode = 0xD1;

}  // namespace

Handshake::Handshake(Conversation& conversation, OptionWrite& optionWrite, RcMeasuring& rc)
    : hintTimer(conversation.link.world().loop, [this] { hint(); }),
      c_(conversation),
      optionWrite_(optionWrite),
      rc_(rc),
      baud_(conversation) {
  hintTimer.setInterval(kHintAfter);
}

Handshake::Result Handshake::handshake(std::string& baudOut, bool readOnly) {
  TargetLink& link = c_.link;
  if (!openPort()) return Result::Failed;
  if (!firstContact()) return Result::Failed;
  if (!link.rx.frameOk) {
    c_.fail(0, "Connection failed!");
    link.closeTargetPort();
    return Result::BrokenFirstContact;
  }
  readClock();
  c_.target.targetModelName.clear();
  const bool identified = link.rx.length() > 24;
  if (identified) {
    if (!readAndReport(readOnly)) return Result::Failed;
    if (readOnly) return Result::Ok;
    if (link.rx.length() > 25 && !checkTargetModel()) return Result::Failed;
  }
  readStatusByte();
  if (readOnly) return readOptionsOnly();
  if (!c_.target.fixedBaudLink) link.say("We are trying to connect to target MCU again ... ");
  c_.stampStart();
  if (!secondStage(baudOut)) return Result::Failed;
  link.shared().textMsg.append(c_.elapsedText() + " )");
  return Result::Ok;
}

bool Handshake::openPort() {
  TargetLink& link = c_.link;
  link.linkParityEven = c_.record().parityEven;
  link.connectBaudText = platform::numberText(platform::valueOf(link.panel().cobBaudMin.text()));
  c_.run.targetConnected = false;
  link.clearReceiveState();
  link.closeTargetPort();
  link.linkParityOn = c_.record().parityUsed;
  const bool good = !link.setMSCommSettings(link.connectBaudText);
  if (!good || link.openTargetPort()) {
    c_.fail(3, "Open COM port failed!");
    link.say("The COM port is opened by another Program or the COM port does not exist.");
    return false;
  }
  link.clearQueues();
  link.shared().imgOpen_sys.setOn(true);
  link.rx.requireStartPair = false;
  hintTimer.start();
  return true;
}

// False: stopped. Without an answer the loops behind it never end.
bool Handshake::firstContact() {
  TargetLink& link = c_.link;
  if (c_.traits().pulses()) {
    rc_.pulseSyncFirst();
  } else if (link.panel().cheTL.value()) {
    fixedLinkSync();
  } else {
    plainSync();
  }
  if (c_.stopped()) return false;
  if (!link.rx.frameOk) return true;
  link.clearQueues();
  const bool fixed = link.panel().cheTL.value();
  link.linkParityOn = !fixed && c_.record().parityUsed;
  (void)link.setMSCommSettings(fixed ? "115200" : link.connectBaudText);
  hintTimer.stop();
  if (onFirstFrame) onFirstFrame();
  return true;
}

void Handshake::plainSync() {
  TargetLink& link = c_.link;
  link.rx.armed = true;
  while (!link.rx.frameOk && !link.stopRequested) {
    link.writeSync(kSyncBytes);
    (void)link.waitFrameCut(Millis(10));
  }
}

void Handshake::fixedLinkSync() {
  TargetLink& link = c_.link;
  link.rx.armed = true;
  link.closeTargetPort();
  link.linkParityOn = false;
  (void)link.setMSCommSettings("115200");
  (void)link.reopenIfClosed();
  link.clearReceiveState();
  while (!link.rx.frameOk && !link.stopRequested) {
    (void)link.sendFixedLinkFrame(0x8A);
    (void)link.waitFrameCut(Millis(100));
  }
}

void Handshake::readClock() {
  TargetInfo& target = c_.target;
  target.fixedBaudLink = c_.link.panel().cheTL.value();
  target.modelCodeKnown = false;
  target.doubleSpeed = false;
  target.targetClockHz = target.fixedBaudLink ? clockFromFixedLink(c_.rx())
                                              : clockFromStatus(c_.rx(), c_.link.connectBaud(), c_.traits().pulses());
}

// The row that the chip's code or its extended code names.
const catalogue::McuRecord* Handshake::lookUp() {
  TargetInfo& target = c_.target;
  const auto rx = c_.rx();
  target.modelCodeHigh = platform::hexText(rx[23], 2);
  target.modelCodeLow.clear();
  target.modelCodeKnown = true;
  const catalogue::McuRecord* found = nullptr;
  if (c_.link.rx.length() > 25) {
    if (rx[23] >= kFirstTwoByteCode) target.modelCodeLow = platform::hexText(rx[24], 2);
    found = findTarget(target.modelCode(), c_.record());
  }
  target.extendedCodeText.clear();
  if (c_.link.rx.length() > 58 && rx[55] > 0) {
    target.extendedCodeText = platform::hexText(rx[55] * 256u + rx[56], 4);
    if (const auto* other = findTarget(target.extendedCodeText, c_.record())) found = other;
  }
  return found;
}

void Handshake::readIdentity() {
  TargetInfo& target = c_.target;
  const catalogue::McuRecord* found = lookUp();
  target.stepping = static_cast<char>(c_.rx()[21]);
  target.firmware = catalogue::FirmwareVersion::fromByte(c_.rx()[20]);
  target.targetModelName = found ? std::string(found->name) : std::string();
  target.targetRecord = found ? *found : c_.record();
  if (!found) target.targetRecord.name = {};  // a borrowed row must not pass for the chip's own
  const auto byLetter = catalogue::familyOf(target.stepping);
  target.family = found || !byLetter ? target.targetRecord.family : *byLetter;
  c_.link.reportedCode = target.modelCode();
}

// Firmwares up to letter "C" tell their options in one byte behind the letter.
bool Handshake::readAndReport(bool readOnly) {
  readIdentity();
  TargetInfo& target = c_.target;
  const auto rx = c_.rx();
  c_.options.reported = options::defaultBytes(c_.traits());
  readStatusOptions(rx, target, c_.options.reported);
  c_.room.refreshChoices();
  if (c_.traits().measuresOscillator())
    std::copy_n(rx.begin() + 54, target.statusTail.size(), target.statusTail.begin());
  c_.reportTarget(rx[20], rx[21], rx[22]);
  reportClock();
  if (idReadFailed()) return c_.fail(3, "IAP read MCU ID is error!");
  c_.run.optionsRead = c_.run.optionsRead || readOnly;
  return true;
}

bool Handshake::idReadFailed() const {
  const int shortest = c_.link.linkParityOn ? 58 : 57;
  return c_.link.rx.length() >= shortest && (c_.rx()[54] & 1);
}

void Handshake::reportClock() {
  const TargetInfo& target = c_.target;
  const double hertz = target.targetClockHz * (target.clockDoubled > 0 ? 2.0 : 1.0);
  const auto line = [&](const char* words, double value) {
    c_.link.say(words + platform::numberText(value / 1000000) + "MHz.");
  };
  if (!target.stepping.firstGeneration()) return line("MCU Clock:", hertz);
  line("Internal MCU Clock:", hertz);
  if (target.stepping == 'B') return;
  const bool halved =
      target.stepping == 'C' ? platform::valueOf(c_.options.reportedWords.doubleSpeed) > 0 : target.doubleSpeed;
  line("External MCU Clock:", halved ? hertz / 2 : hertz);
}

bool Handshake::checkTargetModel() {
  if (modelFits(c_.target, c_.record(), c_.run.frameSize, c_.model.blockSize)) return true;
  const std::string words = "MCU Type is incorrect. please select correct MCU type and open the file again.";
  c_.fail(3, words);
  c_.images.imageValid = false;
  c_.link.world().dialogs.message(platform::kTitle, words + "\n");
  return false;
}

void Handshake::readStatusByte() {
  TargetInfo& target = c_.target;
  const auto rx = c_.rx();
  target.reservedKnown = false;
  if (c_.link.rx.length() <= 27 || target.firmware <= catalogue::FirmwareVersion{2, 5}) return;
  c_.link.rx.requireStartPair = rx[25] & 0x80;
  target.reservedBytes = reservedBytesOf(c_.record(), rx[25]);
  target.reservedKnown = true;
  target.clockDoubled = (rx[25] >> 5) & 1;
}

Handshake::Result Handshake::readOptionsOnly() {
  c_.link.clearQueues();
  c_.link.say("We are Reading options.");
  c_.run.optionsRead = false;
  for (int i = 0; i < 4 && !c_.link.stopRequested; ++i)
    if (optionWrite_.readOptions()) break;
  (void)c_.stopped();
  if (!c_.run.optionsRead) c_.failNow(3, "Connection failed. ");
  return Result::Ok;
}

bool Handshake::secondStage(std::string& baudOut) {
  if (!baud_.send_extern_WDT_address()) {
    if (!c_.stopped()) c_.fail(3, "Connection failed.");
    return false;
  }
  if (c_.target.fixedBaudLink && !testFixedLink()) return false;
  if (c_.record().extSession && !askStatusAgain()) return false;
  if (c_.run.rcTrimRequested && !rc_.measureRc(11)) return false;
  if (c_.target.fixedBaudLink) {
    baudOut = "115200";
    return true;
  }
  if (c_.traits().measuresOscillator()) return rc_.fixedRateBaud(baudOut);
  return baud_.searchAndChange(baudOut);
}

bool Handshake::testFixedLink() {
  c_.link.clearReceiveState();
  for (int i = 0; i < 3 && !c_.link.stopRequested; ++i)
    if (baud_.test_new_baud(115200, {})) break;
  const bool passed = c_.link.rx.frameOk;
  if (c_.stopped()) return false;
  return passed || c_.failNow(3, "Connection failed. ");
}

bool Handshake::askStatusAgain() {
  bool came = false;
  for (int i = 0; i < 3 && !came && !c_.link.stopRequested; ++i) {
    if (i > 0) c_.link.delayMs(Millis(200));
    c_.link.sendCommandFrame(0x50, Millis(300), 0);
    came = c_.link.waitReply();
  }
  if (c_.stopped()) return false;
  if (came && c_.link.rxByte(3) == 0x8F) return true;
  c_.link.rx.frameOk = false;
  return c_.failNow(2, came ? "Connection failed. " : "Connection failed.");
}

void Handshake::pingTarget(Millis timeout) {
  const Millis limit = timeout.count() > 0 ? timeout : Millis(200);
  c_.link.sendCommandFrame(0x80, limit, 0);
  (void)c_.link.waitFrame(limit);
}

void Handshake::hint() {
  c_.link.beeps(2);
  for (const char* line :
       {"Connection is failed. Please try:", " 1. Click ISP-Programmig button in Power-Down mode, ",
        "    then Power-Up", " 2. Stop programming, choose another RS-232 port,", "    check the connection line",
        " 3. Connect P1.0/P1.1 to ground, then supply target", "    MCU power.", " 4. Check external clock connection.",
        " 5. Update KVR-ISP.exe software", " 6. MCU might not have ISP code inside, ",
        "    or the MCU has been damaged.", " 7. If using USB-to-RS232 line, it might not",
        "    be compatible. We can help you buy a compatible", "    USB-to-RS232 line.", "",
        "        It is still in connection state,", "        please supply target MCU power..."})
    c_.link.say(line);
}

}  // namespace kvr::engine
