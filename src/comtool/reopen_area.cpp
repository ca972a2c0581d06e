#include "comtool/reopen_area.h"

namespace kvr::comtool {

ReopenArea::ReopenArea(platform::World world, ToolPanel& panel, PortArea& port)
    : panel_(panel),
      port_(port),
      timer_(
          world.loop, [this] { tryAgain(); }, platform::Timer::Kind::Periodic) {
  panel_.che_Reopen.onClick = [this] {
    if (!panel_.che_Reopen.value()) end();
  };
  portToken_ = panel_.com_Debug_COM.changed.watch([this] {
    if (panel_.com_Debug_COM.text() != name_) end();
  });
}

void ReopenArea::portVanished(const platform::PortError& error) {
  name_ = panel_.com_Debug_COM.text();
  panel_.labPort.setCaption("Waiting for " + name_ + " to come back");
  if (say) say(error.text);
  timer_.start(kTryEvery);
}

void ReopenArea::end() {
  timer_.stop();
  panel_.labPort.setCaption("");
}

// Not while a run or a dialog is on. Whatever the system says, the adapter may be on its way.
void ReopenArea::tryAgain() {
  if (!port_.mayOpen() || port_.tryOpen()) return;
  if (back) back(name_ + " is open again");
}

}  // namespace kvr::comtool
