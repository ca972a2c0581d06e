#include "userpath/demo_download.h"

#include <array>
#include <cstdio>

#include "platform/text.h"
#include "userpath/demo_data_frames.h"
#include "userpath/demo_models.h"
#include "userpath/line_settings.h"
#include "userpath/user_bytes.h"

namespace kvr::userpath {
namespace {

using engine::Millis;

constexpr int kRounds = 3;
constexpr int kFrameSize = 128;
constexpr std::size_t kModelAt = 6;      // of the model number in its reply
constexpr int kShortestModelReply = 11;  // with the sum and the end byte behind it

std::string minutesAndSeconds(platform::Instant time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02lld:%02lld", static_cast<long long>(seconds / 60),
                static_cast<long long>(seconds % 60));
  return text.data();
}

void run(const std::function<void()>& callback) {
  if (callback) callback();
}

}  // namespace

DemoDownload::DemoDownload(DemoContext context, UserPathPanel& panel)
    : context_(context), panel_(panel), line_(context.conversation.link) {
  panel_.com_Demo_DownLoad.onClick = [this] { demoRun(false); };
  panel_.com_Demo_Re_DownLoad.onClick = [this] { demoRun(true); };
  panel_.com_Demo_Stop.onClick = [this] { line_.stop(); };
  context_.lock.changed.connect([this] {
    const bool busy = context_.lock.busy();
    panel_.com_Demo_DownLoad.setEnabled(!busy);
    panel_.com_Demo_Re_DownLoad.setEnabled(!busy);
    panel_.com_Demo_Stop.setEnabled(busy);
  });
}

void DemoDownload::demoRun(bool repeat) {
  auto running = context_.activity.begin();
  if (!running) return;
  run(releaseToolPort);
  link().shared().textMsg.setFocus();
  context_.conversation.run.frameSize = kFrameSize;
  line_.release();
  if (!context_.conversation.images.imageValid) {
    link().world().dialogs.message("KVR-ISP", "  Please open code file. ", platform::BoxIcon::Warning);
    return;
  }
  context_.lock.toBusy();
  link().panel().comStop_Download.setEnabled(true);
  link().stopRequested = line_.demoStop = false;
  link().lostPort.clear();
  countersArmed_ = stopTold_ = false;
  bool good = !panel_.che_Demo_DownLoad.value() || sendCommandFirst();
  do {
    good = good && round();
  } while (good && repeat && countDown());
  if (!stopTold_) link().stopCheck();
  link().closeTargetPort();
  run(stopOperation);
  line_.release();
  link().shared().textMsg.setFocus();
}

bool DemoDownload::sendCommandFirst() {
  if (openLine(link(), settingsText(panel_.demoCommandLine()))) {
    sayPortFailed(link());
    return false;
  }
  link().shared().imgOpen_sys.setOn(true);
  sendUserBytes(link(), panel_.txt_DEMO_UserCode.text());
  return line_.pause(Millis(20));
}

bool DemoDownload::round() {
  if (!countersArmed_ && !context_.counters.armForRun()) return false;
  countersArmed_ = true;
  line_.hold();
  roundBegan_ = link().world().loop.now();
  if (!demoConnect() || !demoReadModel() || !demoErase()) return false;
  DemoDataFrames frames(line_);
  if (!line_.pause(Millis(100))) return false;
  const bool programmed = context_.programming.programImage(&frames);
  context_.programming.hideProgress();
  if (!programmed) {
    stopTold_ = true;  // it has said all there is to say
    return false;
  }
  finishRound();
  // The chip bears its number now, stopped or not.
  return context_.counters.advanceAfterSuccess() && !line_.stopped();
}

bool DemoDownload::failNow(int beeps, const std::string& words) {
  if (line_.stopped()) return false;
  return context_.conversation.failNow(beeps, words);
}

Millis DemoDownload::pollPace() const {
  const int baud = platform::wholeOf(panel_.cob_DEMO_DownLoad_Baud.text());
  return Millis(baud < 2400 ? 200 : baud < 4800 ? 100 : 50);
}

bool DemoDownload::demoConnect() {
  link().shared().textMsg.clear();
  context_.conversation.room.clearLockLabels();  // they tell of a chip that was there before
  if (openLine(link(), settingsText(panel_.demoLine()))) {
    sayPortFailed(link());
    return false;
  }
  link().shared().imgOpen_sys.setOn(true);
  link().say("We are trying to connect to target MCU ... ");
  line_.clearReceiveState();
  if (!line_.pollUntilReply(kDemoConnect, pollPace()) || !line_.demoExchange(kDemoConnect))
    return failNow(1, "Connection is failed. ");
  link().say("Connection is OK...");
  return true;
}

bool DemoDownload::demoReadModel() {
  link().say("We are reading MCU Firmware Version ...");
  bool answered = false;
  for (int i = 0; i < kRounds && !answered && !line_.stopped(); ++i)
    answered = line_.demoExchange(kDemoReadModel) && line_.rx.length() >= kShortestModelReply;
  if (!answered || line_.stopped()) return failNow(0, "Reading MCU Option failed. ");
  const auto number = static_cast<std::uint16_t>(line_.rx.buffer[kModelAt] << 8 | line_.rx.buffer[kModelAt + 1]);
  if (demoModelOf(number).code == context_.conversation.record().code) return true;
  return context_.conversation.fail(3,
                                    "MCU Type is incorrect. please select correct MCU type and open the file again.");
}

bool DemoDownload::demoErase() {
  link().say("We are erasing MCU flash...");
  bool answered = false;
  for (int i = 0; i < kRounds && !answered && !line_.stopped(); ++i) answered = line_.demoExchange(kDemoErase);
  return (answered && !line_.stopped()) || failNow(1, "Erasing MCU flash failed. ");
}

void DemoDownload::finishRound() {
  // Said twice, each time with room for an answer: one of them may get lost.
  for (int i = 0; i < 2; ++i) line_.demoExchange(kDemoFinish);
  link().say("Program OK.");
  link().say("Verify  OK ( Total: " + minutesAndSeconds(link().world().loop.now() - roundBegan_) + " )");
  if (link().panel().optBeepYes.value()) link().world().dialogs.beep();
}

bool DemoDownload::countDown() {
  for (int left = platform::wholeOf(link().panel().comDalay_ReDownLoad.text()); left > 0; --left) {
    link().shared().textMsg.setText("Program succeeded.\n\nAfter a few seconds re-connect will continue.  " +
                                    std::to_string(left));
    if (!line_.pause(Millis(1000))) return false;
  }
  return !line_.stopped();
}

}  // namespace kvr::userpath
