#include "engine/block_writer.h"

namespace kvr::engine {

bool BlockWriter::program() {
  for (const SendRange& range : plan_.ranges)
    if (!programRange(range)) return false;
  return true;
}

bool BlockWriter::programRange(const SendRange& range) {
  const int blockSize = c_.job.model.blockSize;
  const std::int32_t end = plan_.workingEnd(range, blockSize);
  if (plan_.cut(range, blockSize)) tellCut(end);
  const ProgressScale scale = progressScale(range.first, end);
  c_.view().progress({scale.minimum, scale.maximum, scale.minimum, {}});
  for (const AddressRange& block : blocksOf(range.first, end, blockSize)) {
    bool done = false;
    for (int attempt = 0; attempt < kAttempts && !done; ++attempt) {
      if (attempt > 0) c_.note(Setback::BlockAgain);
      done = programBlock(block, range.split, attempt > 0);
      if (c_.link.stopped()) return false;
    }
    if (!done) return false;
    c_.view().progress(
        {scale.minimum, scale.maximum, scale.valueAt(block.last + 1), kilobyteText(block.last - range.first + 1)});
  }
  return true;
}

// The firmware keeps more of the flash's top than the model's row says.
void BlockWriter::tellCut(std::int32_t bound) {
  const std::string kilobytes = std::to_string((bound + 511) / 1024);
  const std::string words = "Enable " + kilobytes + "K file size for this Version firmware";
  c_.view().beep(2);
  c_.say(words + ".");
  c_.say("");
  c_.say(words + "(program " + kilobytes + "K only).");
  c_.view().append("\n");
}

bool BlockWriter::programBlock(AddressRange block, bool split, bool retried) {
  for (const FrameSpan& span : framesOf(block, split, c_.job.frameSize)) {
    if (!sendDataFrame(span, retried) || c_.link.stopped()) return false;
    retried = false;
  }
  return true;
}

bool BlockWriter::sendDataFrame(FrameSpan span, bool retried) {
  Bytes data(static_cast<std::size_t>(span.count));
  for (std::int32_t i = 0; i < span.count; ++i) data[static_cast<std::size_t>(i)] = plan_.at(span.first + i);
  const DataFrame frame = format_.build(span.first, data, retried);
  const bool arrived = format_.send(frame, Millis(dataFrameLimitMs(clockHz_, c_.link.currentBaud())));
  if (!arrived) c_.link.slowDown();
  return arrived;
}

}  // namespace kvr::engine
