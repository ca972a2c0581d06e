#include "comtool/line_area.h"

namespace kvr::comtool {

LineArea::LineArea(platform::World world, ToolPanel& panel, PortArea& port)
    : panel_(panel),
      port_(port),
      breakTimer_(world.loop, [this] { endBreak(); }),
      lookTimer_(
          world.loop, [this] { look(); }, platform::Timer::Kind::Periodic) {
  panel_.che_DTR.onClick = [this] {
    if (port_.holds()) port_.link().setDtr(panel_.che_DTR.value());
  };
  panel_.che_RTS.onClick = [this] {
    if (port_.holds()) port_.link().setRts(panel_.che_RTS.value());
  };
  panel_.comBreak.onClick = [this] { startBreak(); };
  portClosed();
}

void LineArea::startBreak() {
  if (!port_.holds()) return;
  port_.link().setBreak(true);
  breakTimer_.start(kBreakTime);
}

void LineArea::endBreak() {
  if (port_.holds()) port_.link().setBreak(false);
}

void LineArea::portOpened() {
  panel_.comBreak.setEnabled(true);
  lookTimer_.start(kLookEvery);
  look();
}

void LineArea::portClosed() {
  breakTimer_.stop();
  lookTimer_.stop();
  panel_.comBreak.setEnabled(false);
  show({}, false);
}

// A port without these lines is not asked again.
void LineArea::look() {
  const auto lines = port_.holds() ? port_.link().inputLines() : std::nullopt;
  if (!lines) lookTimer_.stop();
  show(lines.value_or(platform::InputLines{}), lines.has_value());
}

void LineArea::show(const platform::InputLines& lines, bool known) {
  const bool up[] = {lines.cts, lines.dsr, lines.dcd, lines.ri};
  for (std::size_t i = 0; i < panel_.imgLine.size(); ++i) {
    panel_.imgLine[i].setOn(up[i]);
    panel_.imgLine[i].setEnabled(known);
    panel_.labLine[i].setEnabled(known);
  }
}

}  // namespace kvr::comtool
