#include "engine/programming.h"

#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr Millis kFirstGenerationErase{5000};
constexpr Millis kExtendedErase{10000};
constexpr int kShortestStatus = 20;  // length of a frame that carries the eight counts
constexpr catalogue::FirmwareVersion kOldestWithFactoryId{6, 3};

}  // namespace

Programming::Programming(Conversation& conversation) : c_(conversation), chipFrames_(conversation) {}

bool Programming::planImageFit() {
  const ImageFit fit = fitImages(c_.target, c_.images.CodeBuffer.rangeEnd, c_.options.wantedWords.clearUnusedAp == "1");
  c_.run.plan = fit.plan;
  return fit.tooBig;
}

bool Programming::eraseTarget() {
  c_.link.say("We are erasing MCU flash...");
  c_.stampStart();
  const int sectors = eraseSectorCount(c_.target, c_.record(), c_.images.CodeBuffer.rangeEnd);
  const AddressRange range = eraseRange(c_.target, c_.record(), c_.run.plan, c_.options.reported);
  const Bytes frame = buildEraseFrame(c_.target, c_.record(), sectors, range);
  c_.run.factoryId.clear();
  c_.link.rx.frameOk = c_.record().extSession ? eraseExtended(frame) : eraseFirstGeneration(frame);
  return c_.link.rx.frameOk;
}

bool Programming::eraseFirstGeneration(const Bytes& frame) {
  TargetLink& link = c_.link;
  (void)link.reopenTargetPort();
  bool erased = false;
  for (int i = 0; i < 3 && !erased && !link.stopRequested; ++i) {
    link.clearReceiveState();
    link.rx.armed = true;
    link.delayMs(Millis(5));
    link.write(frame);
    link.waitDrained();
    link.delayMs(Millis(3));
    erased = awaitErased();
  }
  if (erased) link.shared().textMsg.append(" ( " + c_.elapsedText() + " )");
  link.delayMs(Millis(100));
  return erased;
}

// The answer itself says nothing, so it must not be mistaken for a late answer to a ping: those are status frames, far
// longer.
bool Programming::awaitErased() {
  TargetLink& link = c_.link;
  const platform::Instant end = link.world().loop.now() + kFirstGenerationErase;
  while (link.waitFrame(std::chrono::ceil<Millis>(end - link.world().loop.now()))) {
    if (link.rx.length() < kShortestStatus) return true;
    link.rx.clear();
  }
  return false;
}

// The answer to the change of speed must be the last frame that came: it says that the chip is ready to be erased.
bool Programming::eraseExtended(const Bytes& frame) {
  TargetLink& link = c_.link;
  if (!c_.target.fixedBaudLink && link.rxByte(3) != 0x84) return false;
  link.clearReceiveState();
  link.write(frame);
  if (!link.waitFrame(kExtendedErase) || link.rxByte(3) != 0x00) return false;
  c_.run.eraseTimeText = c_.elapsedText();
  link.shared().textMsg.append(" ( " + c_.run.eraseTimeText + " )");
  noteFactoryId();
  return true;
}

void Programming::noteFactoryId() {
  if (c_.target.firmware < kOldestWithFactoryId || c_.link.rx.length() < 14) return;
  for (int i = 4; i <= 10; ++i) c_.run.factoryId += platform::hexText(c_.link.rxByte(i), 2);
}

void Programming::showProgress() {
  c_.link.shared().ProgressBar1.setVisible(true);
}

void Programming::hideProgress() {
  c_.link.shared().labKbyte.setCaption("");
  c_.link.shared().ProgressBar1.setVisible(false);
}

bool Programming::programImage(DataFrameFormat* format) {
  TargetLink& link = c_.link;
  link.replyTimeoutMs = Millis(800);
  link.gapTimeoutMs = Millis(200);
  c_.run.programDone = false;
  c_.stampStart();
  showProgress();
  link.say("Programming... ( Begin: " + link.timeOfDay() + " )");
  if (!sendImages(format ? *format : chipFrames_)) {
    if (!c_.stopped()) {
      c_.failNow(3, "Programing failed. ");
      link.say("Try to use the lower baud. ");
    }
    return false;
  }
  c_.run.programTimeText = c_.elapsedText();
  link.say("Program OK");
  link.say("Verify  OK  ( Total: " + c_.run.programTimeText + " )");
  c_.stampStart();
  c_.run.programDone = finish();
  return c_.run.programDone;
}

bool Programming::sendImages(DataFrameFormat& format) {
  const SendPlan plan = planSends(c_.record(), c_.target.firmware, c_.model.blockSize, c_.run.frameSize,
                                  c_.images.CodeBuffer, c_.images.EepromBuffer);
  BlockWriter writer(c_, format);
  for (const SendRange& range : plan.ranges)
    if (!writer.programRange(plan, range)) return false;
  return true;
}

// Only here does silence count as success.
bool Programming::finish() {
  if (c_.record().noOptions) {
    c_.link.rx.frameOk = true;
    return true;
  }
  if (!c_.record().extSession) return true;
  c_.link.sendCommandFrame(0x69, Millis(200), 0);
  if (!c_.link.waitReply() || c_.link.rxByte(3) == 0x8D) return true;
  c_.link.rx.frameOk = false;
  return c_.fail(2, "The code has already programed, but the Options haven't been modified.");
}

}  // namespace kvr::engine
