#include "userpath/trigger_room.h"

#include "userpath/trigger_run.h"

namespace kvr::userpath {

TriggerRoom::TriggerRoom(download::RunRoom room, const download::JobPanels& panels, download::DownloadRoom& download,
                         UserPathPanel& page)
    : room_(room), panels_(panels), download_(download), page_(page) {
  page_.comSendUserCode.onClick = [this] { sendAndDownload(); };
  lockToken_ = room_.lock.changed.watch([this] { page_.comSendUserCode.setEnabled(room_.lock.free()); });
}

void TriggerRoom::sendAndDownload() {
  if (sendCommand()) download_.program();
}

bool TriggerRoom::sendCommand() {
  const auto running = room_.activity.begin();
  if (!running) return false;
  const download::PortTaken port(room_.services.lease);
  if (!panels_.images.state.imageValid) {
    room_.results.refuse(engine::RunKind::Trigger, "Please open code file.", panels_.model.name());
    return false;
  }
  if (const auto error = room_.services.lease.link().setSettings(settingsText(page_.userCodeLine()))) {
    room_.results.refuse(engine::RunKind::Trigger, error.text, panels_.model.name());
    return false;
  }
  room_.services.stop.clear();
  const engine::Job job = download::readJob(panels_, false);
  const UserCommand command{settingsText(page_.userCodeLine()), page_.txtUserCode.text()};
  room_.results.begin(engine::RunKind::Trigger, job, {{"line", command.settings}, {"command", command.bytes}});
  room_.lock.toBusy();
  const engine::Outcome outcome = sendTrigger(job, command, room_.services, room_.view);
  room_.lock.toFree();
  room_.results.end(outcome, panels_.model.name(), {});
  return outcome.passed();
}

}  // namespace kvr::userpath
