#include "comtool/receive_area.h"

#include <algorithm>

#include "comtool/hex_text.h"
#include "comtool/text_cells.h"

namespace kvr::comtool {

ReceiveArea::ReceiveArea(platform::World world, ToolPanel& panel)
    : world_(world),
      panel_(panel),
      timerDebugDisplay_(world.loop, [this] { showReceived(); }),
      holdTimer_(world.loop, [this] { showHeld(); }) {
  timerDebugDisplay_.setInterval(kDisplayDelay);
  holdTimer_.setInterval(kHoldTime);
}

// The display timer is not restarted while it runs: on a line that never pauses the pane would stay empty.
void ReceiveArea::receive(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return;
  const platform::Instant now = world_.loop.now();
  if (rxTotal_ == 0 || now - lastArrival_ >= kBurstGap) newBurst_ = true;
  lastArrival_ = now;
  rxTotal_ += static_cast<std::uint32_t>(bytes.size());
  ring_.put(bytes);
  if (timerDebugDisplay_.isActive()) return;
  arrivedAt_ = world_.clock.timeOfDayMillis();
  timerDebugDisplay_.start();
}

void ReceiveArea::showReceived() {
  timerDebugDisplay_.stop();
  showCount();
  if (ring_.empty()) return;
  const auto mode = static_cast<StampMode>(std::max(0, panel_.comb_TimeStamp.listIndex()));
  // A dump has no lines of its own.
  const auto used = hexadecimal() && mode == StampMode::Line ? StampMode::Burst : mode;
  const std::string text = takeText();
  show(stamps_.apply(used, text, arrivedAt_, newBurst_));
  if (!text.empty()) newBurst_ = false;
}

std::string ReceiveArea::takeText() {
  const auto bytes = ring_.takeAll();
  if (!hexadecimal()) {
    std::string text = decoder_.decode(bytes);
    if (decoder_.holds()) holdTimer_.start();
    return text;
  }
  const std::string held = decoder_.takeHeld();
  return hexDump({reinterpret_cast<const std::uint8_t*>(held.data()), held.size()}) + hexDump(bytes);
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
  show(hexadecimal() ? takeText() : decoder_.finish());
}

void ReceiveArea::portClosed() {
  holdTimer_.stop();
  if (ring_.empty()) showHeld();
}

void ReceiveArea::clearPane() {
  panel_.texReceive.clear();
  decoder_.takeHeld();
  stamps_.clear();
  newBurst_ = true;
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
