#include "userpath/trigger_room.h"

#include "engine/run_context.h"
#include "userpath/user_bytes.h"

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
  room_.results.begin();
  const engine::Outcome outcome = send();
  room_.results.end(outcome, panels_.model.name(), {});
  return outcome.passed();
}

engine::Outcome TriggerRoom::send() {
  const engine::Job job = download::readJob(panels_, false);
  engine::TargetLink link(room_.services, room_.view, job.port, engine::sumFormOf(job.record()));
  engine::RunContext c(job, link);
  const auto ended = [&](bool good) { return c.outcome(engine::RunKind::Trigger, good, {}); };
  if (link.open(settingsText(page_.userCodeLine()))) {
    return ended(c.failPort(1));
  }
  link.clearQueues();
  room_.lock.toBusy();
  sendUserBytes(link, page_.txtUserCode.text());
  // The firmware needs the silence to see the command's end; what it answers is dropped.
  if (!link.stopped()) link.delay(engine::Millis(20));
  room_.lock.toFree();
  if (!c.stopped()) return ended(true);
  link.close();
  return ended(false);
}

}  // namespace kvr::userpath
