#include "userpath/trigger.h"

#include "userpath/line_settings.h"
#include "userpath/user_bytes.h"

namespace kvr::userpath {

Trigger::Trigger(engine::TargetLink& link, platform::Activity& activity, platform::UiLock& lock,
                 const images::ImageState& images, UserPathPanel& panel)
    : link_(link), activity_(activity), lock_(lock), images_(images), panel_(panel) {
  panel_.comSendUserCode.onClick = [this] { comSendUserCode_Click(); };
  lock.changed.connect([this] { panel_.comSendUserCode.setEnabled(lock_.free()); });
}

void Trigger::comSendUserCode_Click() {
  if (sendCommand() && download) download();
}

bool Trigger::sendCommand() {
  auto running = activity_.begin();
  if (!running) return false;
  if (releaseToolPort) releaseToolPort();
  if (!images_.imageValid) {
    link_.world().dialogs.message("KVR-ISP", "Please open code file.", platform::BoxIcon::Warning);
    return false;
  }
  link_.stopRequested = false;
  link_.lostPort.clear();
  if (!openPort()) return false;
  lock_.toBusy();
  sendUserBytes(link_, panel_.txtUserCode.text());
  // The firmware needs the silence to tell the command's end; what it answers is nobody's.
  if (!link_.stopRequested) link_.delayMs(engine::Millis(20));
  lock_.toFree();
  if (!link_.stopCheck()) return true;
  link_.closeTargetPort();
  return false;
}

bool Trigger::openPort() {
  link_.closeTargetPort();
  if (const auto error = link_.lease().link().setSettings(settingsText(panel_.userCodeLine()))) {
    link_.world().dialogs.message("KVR-ISP", error.text, platform::BoxIcon::Warning);
    return false;
  }
  if (link_.openTargetPort()) {
    sayPortFailed(link_);
    return false;
  }
  link_.clearQueues();
  return true;
}

}  // namespace kvr::userpath
