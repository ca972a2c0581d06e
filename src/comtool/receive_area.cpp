#include "comtool/receive_area.h"

#include <algorithm>
#include <utility>

#include "comtool/hex_text.h"
#include "comtool/text_cells.h"
#include "platform/text.h"

namespace kvr::comtool {

ReceiveArea::ReceiveArea(platform::World world, ToolPanel& panel, const platform::TextCodec& codec, LogArea& log)
    : world_(world),
      panel_(panel),
      log_(log),
      decoder_(codec),
      echoDecoder_(codec),
      timerDebugDisplay_(world.loop, [this] { showReceived(); }),
      holdTimer_(world.loop, [this] { showHeld(); }) {
  timerDebugDisplay_.setInterval(kDisplayDelay);
  holdTimer_.setInterval(kHoldTime);
}

// The display timer is not restarted while it runs: on a line that never pauses the pane would stay empty. A log of
// what is shown misses nothing: for its sake the ring is emptied before it overflows.
void ReceiveArea::receive(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return;
  log_.bytesCame(bytes);
  const Chunk chunk = chunkNow();
  rxTotal_ += static_cast<std::uint32_t>(bytes.size());
  std::size_t taken = ring_.put(bytes);
  keepChunk(chunk, taken);
  for (; taken < bytes.size() && log_.takesText();) {
    convert();
    const std::size_t more = ring_.put(bytes.subspan(taken));
    keepChunk({0, chunk.stamp, false, false}, more);
    taken += more;
  }
  if (!timerDebugDisplay_.isActive()) timerDebugDisplay_.start();
}

StampMode ReceiveArea::stampMode() const {
  const auto mode = static_cast<StampMode>(std::max(0, panel_.comb_TimeStamp.listIndex()));
  // A dump has no lines of its own.
  return hexadecimal() && mode == StampMode::Line ? StampMode::Burst : mode;
}

ReceiveArea::Chunk ReceiveArea::chunkNow() {
  const platform::Instant now = world_.loop.now();
  const platform::Millis silence{std::max(1, platform::wholeOf(panel_.txtHexSilence.text()))};
  Chunk chunk;
  chunk.newBurst = rxTotal_ == 0 || now - lastArrival_ >= kBurstGap;
  chunk.newLine = panel_.che_HexLines.value() && now - lastArrival_ >= silence;
  if (panel_.comb_TimeStamp.listIndex() > 0) chunk.stamp = world_.clock.timeOfDayMillis();
  lastArrival_ = now;
  return chunk;
}

void ReceiveArea::keepChunk(Chunk chunk, std::size_t bytes) {
  const bool joins = !chunks_.empty() && !chunk.newBurst && !chunk.newLine && chunk.stamp == chunks_.back().stamp;
  if (bytes > 0 && !joins) chunks_.push_back(std::move(chunk));
  if (bytes > 0) chunks_.back().bytes += bytes;
}

// The ring as text, for the log and for the pane.
void ReceiveArea::convert() {
  const auto bytes = ring_.takeAll();
  std::span<const std::uint8_t> rest = bytes;
  std::string text;
  for (const Chunk& chunk : chunks_) {
    text += textOf(rest.first(chunk.bytes), chunk);
    rest = rest.subspan(chunk.bytes);
  }
  chunks_.clear();
  take(text);
}

// With the oldest text going anyway, no more of it is kept than the pane can show.
void ReceiveArea::take(const std::string& text) {
  log_.textCame(text);
  waiting_ += text;
  if (panel_.che_KeepNewest.value() && waiting_.size() > 8 * kDisplayLimit)
    waiting_ = std::string(tailChars(waiting_, kDisplayLimit));
}

void ReceiveArea::showReceived() {
  timerDebugDisplay_.stop();
  showCount();
  convert();
  showWaiting();
}

void ReceiveArea::showWaiting() {
  if (!waiting_.empty()) show(std::exchange(waiting_, {}));
}

std::string ReceiveArea::textOf(std::span<const std::uint8_t> bytes, const Chunk& chunk) {
  const std::string lead = hexadecimal() && chunk.newLine ? stamps_.endLine() : "";
  return lead + stamps_.apply(stampMode(), textOf(decoder_, filter_, bytes), chunk.stamp, chunk.newBurst);
}

std::string ReceiveArea::textOf(TextDecoder& decoder, EscapeFilter& filter, std::span<const std::uint8_t> bytes) {
  if (hexadecimal()) {
    const std::string held = decoder.takeHeld();
    return hexDump(platform::bytesOf(held)) + hexDump(bytes);
  }
  std::string text = decoder.decode(bytes, encodingOf(panel_));
  if (decoder.holds()) holdTimer_.start();
  if (panel_.che_Escapes.value()) return filter.pass(text);
  filter.clear();
  return text;
}

void ReceiveArea::echo(std::span<const std::uint8_t> bytes) {
  convert();
  take(stamps_.apply(StampMode::Off, textOf(echoDecoder_, echoFilter_, bytes), "", false));
  showWaiting();
}

void ReceiveArea::say(const std::string& words) {
  convert();
  take(stamps_.endLine() + "[" + world_.clock.timeOfDayMillis() + "] " + words + "\n");
  showWaiting();
}

void ReceiveArea::show(const std::string& text) {
  const std::size_t added = countChars(text);
  if (panel_.che_KeepNewest.value()) {
    panel_.texReceive.append(added > kDisplayLimit ? tailChars(text, kDisplayLimit) : text);
    panel_.texReceive.keepNewest(kDisplayLimit);
    return;
  }
  const std::size_t present = panel_.texReceive.length();
  if (present + added <= kDisplayLimit) return panel_.texReceive.append(text);
  showCutTo(kDisplayLimit - std::min(present, kDisplayLimit), text);
}

// A character that has begun lies beyond the limit, too: kept, it would overflow a second time when the port closes.
void ReceiveArea::showCutTo(std::size_t room, const std::string& text) {
  panel_.texReceive.append(headChars(text, room));
  decoder_.takeHeld();
  if (onOverflow) onOverflow();
  timerDebugDisplay_.stop();
}

void ReceiveArea::showHeld() {
  if (!decoder_.holds()) return;
  take(hexadecimal() ? textOf(decoder_, filter_, {}) : decoder_.finish());
  showWaiting();
}

void ReceiveArea::portClosed() {
  holdTimer_.stop();
  if (ring_.empty()) showHeld();
}

// What has come and was not shown goes into the log all the same.
void ReceiveArea::clearRing() {
  if (log_.takesText()) convert();
  waiting_.clear();
  chunks_.clear();
  ring_.clear();
}

void ReceiveArea::clearPane() {
  clearRing();
  panel_.texReceive.clear();
  decoder_.takeHeld();
  filter_.clear();
  stamps_.clear();
  lastArrival_ = world_.loop.now() - kBurstGap;
}

void ReceiveArea::replaceText(std::string_view text) {
  clearPane();
  panel_.texReceive.setText(text);
}

void ReceiveArea::clearCount() {
  rxTotal_ = 0;
  showCount();
}

void ReceiveArea::showCount() {
  panel_.labReceiveCount.setCaption("Receive counter:" + std::to_string(rxTotal_));
}

}  // namespace kvr::comtool
