#include "comtool/tool_room.h"

#include "comtool/tool_guide.h"

namespace kvr::comtool {

namespace {

ToolContext withDialogs(const ToolContext& from, platform::Dialogs& dialogs) {
  const platform::World& world = from.world;
  return {.world = {world.loop, world.link, dialogs, world.store, world.files, world.clock},
          .lease = from.lease,
          .activity = from.activity,
          .lock = from.lock,
          .panel = from.panel,
          .mainPort = from.mainPort,
          .codec = from.codec};
}

}  // namespace

ToolRoom::ToolRoom(const ToolContext& context)
    : dialogs_(context.world.loop, context.world.dialogs, context.activity),
      context_(withDialogs(context, dialogs_)),
      panel_(context.panel),
      port_(context_),
      lines_(context_.world, panel_, port_),
      reopen_(context_.world, panel_, port_),
      log_(context_.world, panel_, context_.lock),
      receive_(context_.world, panel_, context_.codec, log_),
      send_(context_, port_),
      paste_(context_.world, panel_, port_, send_),
      pane_(context_.world, panel_, context_.lock) {
  connectAreas();
  connectButtons();
  lockToken_ = context_.lock.changed.watch([this] { applyLock(); });
}

void ToolRoom::connectAreas() {
  port_.onPortError = [this] { send_.stopAutoSends(); };
  port_.onOpened = [this] {
    reopen_.end();
    lines_.portOpened();
  };
  port_.onClosed = [this] {
    paste_.portClosed();
    lines_.portClosed();
    receive_.portClosed();
    if (portClosed) portClosed();
  };
  port_.onAwaited = [this](const platform::PortError& error) { reopen_.portVanished(error); };
  port_.onReceive = [this] { takeBytes(); };
  reopen_.say = [this](const std::string& words) { receive_.say(words); };
  reopen_.back = [this](const std::string& words) {
    receive_.say(words);
    if (portIsBack) portIsBack(words);
  };
  receive_.onOverflow = [this] { paneFull(); };
  send_.onSent = [this](std::span<const std::uint8_t> bytes) {
    if (panel_.che_LocalEcho.value()) receive_.echo(bytes);
  };
}

void ToolRoom::releasePort() {
  reopen_.end();
  port_.releasePort();
}

void ToolRoom::connectButtons() {
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    panel_.comOpenCOM[i].onClick = [this] { openOrClose(); };
    panel_.imgOpen[i].onClick = [this] { openOrClose(); };
    panel_.comDebugClear[i].onClick = [this, i] { clearPage(i); };
    panel_.comDebugHelp[i].onClick = [this, i] { helpOnPage(i); };
  }
  panel_.comClearCount.onClick = [this] {
    receive_.clearCount();
    send_.clearCount();
  };
  context_.mainPort.imgOpen_sys.onClick = [this] {
    if (context_.mainPort.imgOpen_sys.on()) mainLampPressed();
  };
}

void ToolRoom::applyLock() {
  for (std::size_t i = 1; i < ToolPanel::kPages; ++i) {
    panel_.comDebugClear[i].setEnabled(context_.lock.free());
    panel_.comDebugHelp[i].setEnabled(!context_.lock.busy());
  }
}

// What one event takes is bounded; the lease calls again for what is left.
void ToolRoom::takeBytes() {
  platform::SerialLink& link = context_.lease.link();
  for (std::size_t taken = 0; taken < RxRing::kCapacity && link.inBytesPending() > 0;) {
    const auto bytes = link.readBytes(0);
    if (bytes.empty()) return;
    taken += bytes.size();
    receive_.receive(bytes);
    if (bytesReceived) bytesReceived(bytes);
  }
}

// Only the terminal's own port is closed: a run that has taken it over meanwhile goes on, and the box comes after it.
void ToolRoom::paneFull() {
  if (port_.isOpen()) {
    if (stopRun) stopRun();
    send_.stopAutoSends();
    port_.releasePort();
  }
  dialogs_.message(platform::kTitle, ReceiveArea::kTooLong, platform::BoxIcon::Information);
}

// Closing by hand ends the automatic sends first; they would open the port again.
void ToolRoom::openOrClose() {
  reopen_.end();
  if (!port_.isOpen()) return port_.takePort();
  send_.stopAutoSends();
  port_.releasePort();
}

void ToolRoom::mainLampPressed() {
  if (stopRun) stopRun();
  if (port_.isOpen()) openOrClose();
}

void ToolRoom::clearPage(std::size_t page) {
  if (page == 0)
    receive_.clearPane();
  else if (clearMonitor)
    clearMonitor();
  receive_.clearRing();
}

void ToolRoom::helpOnPage(std::size_t page) {
  if (page == 0) return receive_.replaceText(toolGuide());
  if (context_.activity.busy()) return;
  dialogs_.message(platform::kTitle, "Click COM Tool please, then click the Help button in the COM Tool area.",
                   platform::BoxIcon::Information);
}

void ToolRoom::writeAnswer(std::span<const std::uint8_t> bytes) {
  if (port_.holds() && !port_.overfull()) port_.write(bytes);
}

}  // namespace kvr::comtool
