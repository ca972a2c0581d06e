#include "userpath/demo_room.h"

#include "platform/text.h"

namespace kvr::userpath {
DemoRoom::DemoRoom(download::RunRoom room, const download::JobPanels& panels, images::ImageRoom& images,
                   platform::TextBox& textMsg, UserPathPanel& page)
    : room_(room), panels_(panels), images_(images), textMsg_(textMsg), page_(page) {
  page_.com_Demo_DownLoad.onClick = [this] { program(false); };
  page_.com_Demo_Re_DownLoad.onClick = [this] { program(true); };
  page_.com_Demo_Stop.onClick = [this] { room_.services.stop.request(); };
  lockToken_ = room_.lock.changed.watch([this] {
    const bool busy = room_.lock.busy();
    page_.com_Demo_DownLoad.setEnabled(!busy);
    page_.com_Demo_Re_DownLoad.setEnabled(!busy);
    page_.com_Demo_Stop.setEnabled(busy);
  });
}

DemoJob DemoRoom::readDemoJob() const {
  DemoJob job{.job = download::readJob(panels_, false), .settings = settingsText(page_.demoLine()), .command = {}};
  job.job.frameSize = 128;
  return job;
}

void DemoRoom::program(bool repeat) {
  const auto running = room_.activity.begin();
  if (!running) return;
  const download::PortTaken port(room_.services.lease);
  textMsg_.setFocus();
  if (!images_.state.imageValid) {
    room_.results.refuse(engine::RunKind::Demo, "  Please open code file. ", panels_.model.name());
    return;
  }
  room_.lock.toBusy();
  room_.services.stop.clear();
  if (images_.counters.armForRun()) {
    DemoJob job = readDemoJob();
    if (page_.che_Demo_DownLoad.value())
      job.command = UserCommand{settingsText(page_.demoCommandLine()), page_.txt_DEMO_UserCode.text()};
    while (round(job) && repeat && !stopped()) {
      countDown();
      if (stopped()) break;
      job = readDemoJob();
    }
  } else {
    room_.results.end(engine::refused(engine::RunKind::Demo, "The serial number could not be written."),
                      panels_.model.name(), {});
  }
  room_.lock.toFree();
  textMsg_.setFocus();
}

// True: the chip is good and the images carry the next number.
bool DemoRoom::round(DemoJob& job) {
  room_.results.begin(engine::RunKind::Demo, job.job, traceFieldsOf(job));
  const engine::Outcome outcome = DemoRun(job, room_.services, room_.view).program();
  room_.results.end(outcome, panels_.model.name(), images_.counters.numberInHand());
  return outcome.passed() && images_.counters.advanceAfterSuccess();
}

void DemoRoom::countDown() {
  for (int left = platform::wholeOf(panels_.download.comDalay_ReDownLoad.text()); left > 0 && !stopped(); --left) {
    textMsg_.setText("Program succeeded.\n\nAfter a few seconds re-connect will continue.  " + std::to_string(left));
    if (!engine::pause(room_.services, platform::Millis(1000))) break;
  }
  if (!stopped()) return;
  room_.view.beep(1);
  room_.view.say("Operation stopped. ");
}

}  // namespace kvr::userpath
