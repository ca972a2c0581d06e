#include "engine/block_writer.h"

#include "engine/status_frame.h"

namespace kvr::engine {

void BlockWriter::showScale(const ProgressScale& scale) {
  c_.link.shared().ProgressBar1.setRange(scale.minimum, scale.maximum);
}

bool BlockWriter::programRange(const SendPlan& plan, SendRange range) {
  const std::int32_t wantedEnd = roundedEnd(range.last, c_.model.blockSize);
  ProgressScale scale = progressScale(range.first, wantedEnd);
  showScale(scale);
  const std::int32_t end = limitByFirmware(wantedEnd);
  if (end != wantedEnd) showScale(scale = progressScale(range.first, end));
  for (const AddressRange& block : blocksOf(range.first, end, c_.model.blockSize)) {
    bool done = false;
    for (int attempt = 0; attempt < kAttempts && !done; ++attempt) {
      done = programBlock(plan, block, range.split, attempt > 0);
      if (c_.link.stopRequested) return false;
    }
    if (!done) return false;
    c_.link.shared().ProgressBar1.setValue(scale.valueAt(block.last + 1));
    c_.link.shared().labKbyte.setCaption(kilobyteText(block.last - range.first + 1));
  }
  return true;
}

// The firmwares of these models keep more of the flash's top than their rows say.
std::int32_t BlockWriter::limitByFirmware(std::int32_t end) {
  TargetInfo& target = c_.target;
  if (!target.quirks().firmwareKeepsTop && !c_.traits().firmwareKeepsTop) return end;
  if (c_.traits().tellsSize && !target.reservedKnown)
    target.reservedBytes = reservedFromVersion(target.firmware, target.reservedBytes);
  const std::int32_t bound = c_.record().dataEnd + 1024 - target.reservedBytes;
  if (target.reservedBytes <= 1024 || !format_.limitsByFirmware() || end <= bound) return end;
  const std::string kilobytes = std::to_string((bound + 511) / 1024);
  const std::string words = "Enable " + kilobytes + "K file size for this Version firmware";
  c_.link.beeps(2);
  c_.link.say(words + ".");
  c_.link.say("");
  c_.link.say(words + "(program " + kilobytes + "K only).");
  c_.link.shared().textMsg.append("\n");
  return bound;
}

bool BlockWriter::programBlock(const SendPlan& plan, AddressRange block, bool split, bool retried) {
  for (const FrameSpan& span : framesOf(block, split, c_.run.frameSize)) {
    if (!sendDataFrame(plan, span, retried) || c_.link.stopRequested) return false;
    retried = false;
  }
  return true;
}

bool BlockWriter::sendDataFrame(const SendPlan& plan, FrameSpan span, bool retried) {
  Bytes data(static_cast<std::size_t>(span.count));
  for (std::int32_t i = 0; i < span.count; ++i) data[static_cast<std::size_t>(i)] = plan.at(span.first + i);
  const DataFrame frame = format_.build(span.first, data, retried);
  format_.clearReply();
  c_.link.write(frame.wire);
  const Millis limit(dataFrameLimitMs(c_.target.targetClockHz, c_.link.currentBaud()));
  return format_.awaitReply(limit) && format_.accepts(frame.dataSum);
}

}  // namespace kvr::engine
