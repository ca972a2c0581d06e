#include "engine/session.h"

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr int kPings = 5;
constexpr int kOptionReads = 4;

bool ask(const std::function<bool()>& hook, bool otherwise) {
  return hook ? hook() : otherwise;
}
void tell(const std::function<void()>& hook) {
  if (hook) hook();
}

}  // namespace

Session::Session(Conversation& conversation, platform::UiLock& lock, platform::Activity& activity, SessionHooks& hooks)
    : c_(conversation),
      lock_(lock),
      activity_(activity),
      hooks_(hooks),
      optionWrite_(conversation),
      rc_(conversation),
      handshake_(conversation, optionWrite_, rc_),
      programming_(conversation) {
  handshake_.onFirstFrame = [this] {
    answered_ = true;
    firstAnswer_ = c_.link.world().loop.now();
    c_.link.panel().verdict.set(VerdictKind::Working);
  };
  DownloadPanel& panel = c_.link.panel();
  panel.comDownload[0].onClick = [this] { comDownload_Click(0); };
  panel.comDownload[1].onClick = [this] { comDownload_Click(1); };
  panel.comStop_Download.onClick = [this] { comStop_Download_Click(); };
  panel.comReadChipLock.onClick = [this] { comReadChipLock_Click(); };
  panel.Command2.onClick = [this] { Command2_Click(); };
  panel.comClear_OK_Count.onClick = [this] { comClear_OK_Count_Click(); };
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
  applyLock();
}

void Session::applyLock() {
  DownloadPanel& panel = c_.link.panel();
  const bool mayStart = !lock_.busy();
  panel.comDownload[0].setEnabled(mayStart);
  panel.comDownload[1].setEnabled(mayStart);
  panel.comReadChipLock.setEnabled(mayStart);
  panel.Command2.setEnabled(mayStart);
  panel.comStop_Download.setEnabled(!mayStart);
}

void Session::comDownload_Click(int index) {
  const auto running = activity_.begin();
  if (!running) return;
  if (!prepare(index)) return;
  RoundEnd end = round(index);
  while (end == RoundEnd::Again) end = round(index);
  if (end == RoundEnd::Done) {
    finishRun();
    return;
  }
  stopOperation();
  record(false);
}

// A run that cannot start touches neither the lock nor the line.
bool Session::refuse(const std::string& words) {
  c_.run.failureWords = words;
  record(false);
  return false;
}

bool Session::prepare(int index) {
  TargetLink& link = c_.link;
  c_.run = {};
  answered_ = false;
  link.lostPort.clear();
  rc_.reset();
  link.rx.boardCrcMode = false;
  c_.run.rcTrimRequested = c_.traits().measuresOscillator();
  tell(hooks_.imgOpen_Click);
  link.lease().hold(Master::Engine);
  link.closeTargetPort();
  if (!c_.images.imageValid) {
    link.world().dialogs.message(platform::kTitle, "    Please open code file.   ", platform::BoxIcon::Information);
    return refuse("Please open code file.");
  }
  if (!ask(hooks_.reloadIfAsked, true) || !c_.images.imageValid) return refuse("The file could not be loaded again.");
  if (!ask(hooks_.armCounters, true)) return refuse("The serial number could not be written.");
  if (c_.run.rcTrimRequested && !c_.room.checkFrequency()) return refuse("The R/C frequency is out of range.");
  // The window was asked to close while the file was waited for: a run that began now would keep it open.
  if (ask(hooks_.closeAsked, false)) return refuse("Operation stopped. ");
  lock_.toBusy();
  c_.run.frameSize = c_.traits().frameSize;
  if (index == 0 && link.panel().cheTL.value()) c_.run.frameSize = 128;
  link.stopRequested = false;
  return true;
}

Session::RoundEnd Session::round(int index) {
  TargetLink& link = c_.link;
  link.rx.requireStartPair = false;
  link.shared().textMsg.clear();
  c_.run.targetConnected = c_.run.optionsRead = false;
  c_.run.failureWords.clear();
  c_.run.factoryId.clear();
  answered_ = false;
  rc_.reset();
  c_.composeOptions();
  link.panel().verdict.set(VerdictKind::Waiting);
  if (!programChip()) {
    programming_.hideProgress();
    return RoundEnd::Failed;
  }
  countSuccess();
  if (!ask(hooks_.advanceCounters, true) || index == 0) return RoundEnd::Done;
  countDown();
  return RoundEnd::Again;
}

bool Session::programChip() {
  TargetLink& link = c_.link;
  if (!connectTarget(false) || !firmwareSupported()) return false;
  if (!c_.run.plan.made && programming_.planImageFit()) {
    link.beeps(2);
    for (const char* line :
         {"", "The Program Code and EEPROM data is too big.", "", "The exceeding part won't program."})
      link.say(line);
  }
  if (!erase() || !programming_.programImage()) return false;
  link.delayMs(Millis(link.maxBaudText() != link.connectBaudText ? 1000 : 100));
  programming_.hideProgress();
  if (!writeChipOptions()) return false;
  link.say("Program OK");
  link.say("Verify  OK ( Total: " + c_.run.programTimeText + " )");
  link.say("Encrypt OK.");
  return !c_.run.rcTrimRequested || rc_.reportRcResult();
}

bool Session::firmwareSupported() {
  const TargetInfo& target = c_.target;
  const unsigned oldest = target.stepping.firstGeneration() ? 4 : 5;
  if (target.firmware >= catalogue::FirmwareVersion{oldest, 0}) return true;
  const std::string words = "Sorry, the current program does not support the MCU or Firmware Version is too low.";
  c_.run.failureWords = words;
  c_.link.world().dialogs.message(platform::kTitle, words, platform::BoxIcon::Information);
  return false;
}

bool Session::erase() {
  if (c_.target.firmware <= catalogue::FirmwareVersion{0, 2}) return true;
  const bool erased = programming_.eraseTarget();
  if (c_.stopped()) return false;
  if (erased) return true;
  c_.failNow(3, "Erasing MCU failed. ");
  c_.link.say("Try to use the lower baud.");
  return false;
}

bool Session::writeChipOptions() {
  if (c_.record().topBlockFree || c_.traits().layout == catalogue::OptionLayout::None) return true;
  return optionWrite_.writeOptions();
}

bool Session::connectTarget(bool readOnly) {
  c_.room.clearLockLabels();
  c_.link.say("We are trying to connect to target MCU ... ");
  std::string baud;
  const bool connected =
      handshake_.handshake(baud, readOnly) == Handshake::Result::Ok && settleConnection(baud, readOnly);
  if (!connected) haltLine();
  return connected;
}

bool Session::settleConnection(const std::string& baud, bool readOnly) {
  if (!c_.record().extSession)
    for (int i = 0; i < kPings && !c_.link.stopRequested; ++i) handshake_.pingTarget(Millis(0));
  if (readOnly || c_.stopped()) return false;
  if (!c_.target.modelCodeKnown) {
    c_.run.optionsRead = false;
    for (int i = 0; i < kOptionReads && !c_.link.stopRequested; ++i)
      if (optionWrite_.readOptions()) break;
    if (c_.stopped()) return false;
    if (!c_.run.optionsRead) return c_.failNow(3, "Connection failed. ");
  }
  c_.link.say("Current Baud is: " + (c_.link.panel().cheTL.value() ? std::string("115200") : baud) + " bps.");
  if (!handshake_.checkTargetModel()) return false;
  c_.run.targetConnected = true;
  return true;
}

// The one place where a run succeeds.
void Session::countSuccess() {
  DownloadPanel& panel = c_.link.panel();
  const std::string count = platform::numberText(platform::valueOf(panel.txtWrite_OK_Count.text()) + 1);
  panel.txtWrite_OK_Count.setText(" " + count);
  c_.link.world().store.set("Settings", "Write_OK_Count", count);
  if (const auto saved = c_.link.world().store.flush(); !saved)
    c_.link.say("The count could not be saved: " + saved.error);
  record(true);
  if (panel.optBeepYes.value()) c_.link.world().dialogs.beep();
}

void Session::record(bool passed) {
  RunRecord entry;
  platform::World& world = c_.link.world();
  entry.time = world.clock.dateTime();
  entry.model = c_.model.name();
  entry.passed = passed;
  entry.failure = passed ? std::string() : c_.run.failureWords;
  entry.codeSum = c_.images.CodeBuffer.sum;
  entry.dataSum = c_.images.EepromBuffer.sum;
  if (answered_) {
    entry.firmware = c_.target.firmware.text() + c_.target.stepping.text();
    entry.seconds =
        static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(world.loop.now() - firstAnswer_).count());
  }
  if (hooks_.serialNumber) entry.serialNumber = hooks_.serialNumber();
  entry.factoryId = c_.run.factoryId;
  if (hooks_.onRunEnd) hooks_.onRunEnd(entry);
  c_.link.panel().verdict.set(passed ? VerdictKind::Pass : VerdictKind::Fail);
}

// The next chip: this one leaves its boot firmware, and the operator gets time to change it.
void Session::countDown() {
  TargetLink& link = c_.link;
  link.endFixedLink();
  link.waitDrained();
  link.clearQueues();
  link.closeTargetPort();
  const std::string finalText = link.shared().textMsg.text();
  for (int n = platform::wholeOf(link.panel().comDalay_ReDownLoad.text()); n >= 1; --n) {
    link.shared().textMsg.setText(
        finalText + "\n\nProgram succeed.\n\nAfter a few seconds, re-connection will continue.  " + std::to_string(n));
    link.delayMs(Millis(1000));
    if (ask(hooks_.closeAsked, false)) return;
  }
}

void Session::finishRun() {
  TargetLink& link = c_.link;
  handshake_.hintTimer.stop();
  link.stopRequested = true;
  c_.run.targetConnected = false;
  link.clearQueues();
  link.endFixedLink();
  if (ask(hooks_.autoOpenPort, false) && hooks_.imgNotOpen_Click) {
    tell(hooks_.relock);
    lock_.toFree();
    link.shared().imgOpen_sys.setOn(false);  // lit again below when the terminal has the same port
    hooks_.imgNotOpen_Click();
    return;
  }
  link.closeTargetPort();
  stopOperation();
}

void Session::haltLine() {
  handshake_.hintTimer.stop();
  c_.link.stopRequested = true;
  c_.run.targetConnected = false;
  c_.link.clearQueues();
  c_.link.closeTargetPort();
  c_.link.shared().imgOpen_sys.setOn(false);
}

void Session::stopOperation() {
  haltLine();
  tell(hooks_.relock);
  lock_.toFree();
}

void Session::comStop_Download_Click() {
  haltLine();
  if (activity_.busy()) return;
  tell(hooks_.relock);
  lock_.toFree();
}

void Session::comReadChipLock_Click() {
  const auto running = activity_.begin();
  if (!running) return;
  tell(hooks_.imgOpen_Click);
  TargetLink& link = c_.link;
  link.lease().hold(Master::Engine);
  link.rx.boardCrcMode = false;
  link.lostPort.clear();
  lock_.toBusy();
  link.stopRequested = false;
  link.shared().textMsg.clear();
  link.panel().verdict.set(VerdictKind::Waiting);
  (void)connectTarget(true);
  stopOperation();
  link.panel().verdict.set(VerdictKind::Idle);
}

void Session::Command2_Click() {
  if (activity_.busy()) return;
  DownloadPanel& panel = c_.link.panel();
  panel.cheTL.setValue(true);
  comDownload_Click(0);
  panel.cheTL.setValue(false);
}

void Session::comClear_OK_Count_Click() {
  c_.link.panel().txtWrite_OK_Count.setText("0");
  c_.link.world().store.set("Settings", "Write_OK_Count", "0");
  if (const auto saved = c_.link.world().store.flush(); !saved)
    c_.link.say("The count could not be saved: " + saved.error);
}

}  // namespace kvr::engine
