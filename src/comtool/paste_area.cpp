#include "comtool/paste_area.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::comtool {

namespace {

platform::Millis pauseIn(const platform::TextBox& box) {
  return platform::Millis(std::clamp(platform::wholeOf(box.text()), 0, PasteArea::kLongestPause));
}

}  // namespace

PasteArea::PasteArea(platform::World world, ToolPanel& panel, PortArea& port, SendArea& send)
    : panel_(panel), port_(port), send_(send), timer_(world.loop, [this] { step(); }) {
  panel_.comPaste.onClick = [this] {
    if (panel_.texReceive.pasteRequest) panel_.texReceive.pasteRequest();
  };
  panel_.texReceive.onPaste = [this](const std::string& text) { return paste(text); };
  panel_.comPasteStop.onClick = [this] { cancel(); };
  showProgress();
}

bool PasteArea::paste(const std::string& text) {
  if (text.empty() || queue_.active() || !port_.makeReady()) return false;
  queue_.start(text, lineEndOf(panel_), {pauseIn(panel_.txtPasteChar), pauseIn(panel_.txtPasteLine)});
  panel_.labPaste.setCaption("");
  showProgress();
  step();
  return true;
}

// 10 bits make a character on the wire, or somewhat more.
std::size_t PasteArea::room() const {
  const int perSecond = std::max(platform::wholeOf(panel_.com_Debug_Baud.text()) / 10, 1);
  const auto ahead = static_cast<std::size_t>(perSecond * kAhead.count() / 1000 + 1);
  return ahead - std::min(ahead, port_.link().outBytesPending());
}

void PasteArea::step() {
  if (!port_.holds()) return cancel();
  platform::Millis pause{0};
  if (const std::size_t free = room(); free > 0) {
    const auto next = queue_.next(free);
    send_.write(send_.encoded(next.text));
    pause = next.pause;
  }
  showProgress();
  if (!queue_.active()) return showEnd("Pasted");
  timer_.start(pause.count() > 0 ? pause : kTick);
}

// What the line has not carried yet is taken back.
void PasteArea::cancel() {
  if (!queue_.active()) return;
  timer_.stop();
  if (port_.holds()) port_.link().clearOut();
  showEnd("Paste cancelled");
}

void PasteArea::showEnd(const char* how) {
  panel_.labPaste.setCaption(std::string(how) + ": " + std::to_string(queue_.done()) + " of " +
                             std::to_string(queue_.size()) + " bytes");
  queue_.cancel();
  showProgress();
}

void PasteArea::showProgress() {
  const bool on = queue_.active();
  panel_.comPaste.setVisible(!on);
  panel_.comPasteStop.setVisible(on);
  panel_.barPaste.setVisible(on);
  panel_.barPaste.setValue(on ? static_cast<int>(queue_.done() * 100 / queue_.size()) : 0);
}

}  // namespace kvr::comtool
