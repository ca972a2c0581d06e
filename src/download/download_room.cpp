#include "download/download_room.h"

#include <algorithm>

#include "engine/job_plan.h"
#include "platform/text.h"

namespace kvr::download {

DownloadRoom::DownloadRoom(RunRoom room, platform::Dialogs& dialogs, const JobPanels& panels, DownloadPanel& panel,
                           MainControls controls, images::ImageRoom& images, options::OptionsRoom& options,
                           BooksDesk& books)
    : room_(room),
      dialogs_(dialogs),
      panels_(panels),
      panel_(panel),
      controls_(controls),
      images_(images),
      options_(options),
      books_(books),
      power_(panel, room_.services.lease, room_.lock) {
  panel_.comDownload[0].onClick = [this] { program(); };
  panel_.comDownload[1].onClick = [this] { programRepeatedly(); };
  panel_.comStop_Download.onClick = [this] { stop(); };
  panel_.comReadChipLock.onClick = [this] { checkChip(); };
  panel_.comLowerBaud.onClick = [this] { tryLowerBaud(); };
  panel_.comPlan.onClick = [this] { showPlan(); };
  panel_.Command2.onClick = [this] { programOnFixedLink(); };
  lockToken_ = room_.lock.changed.watch([this] { applyLock(); });
  applyLock();
}

// A run has read these boxes: they must go on showing what it works with.
void DownloadRoom::applyLock() {
  const bool mayStart = !room_.lock.busy();
  for (platform::Control* control : std::initializer_list<platform::Control*>{
           &panel_.comDownload[0], &panel_.comDownload[1], &panel_.comReadChipLock, &panel_.comPlan, &panel_.Command2,
           &panel_.cobBaudMin, &panel_.cobBaudMax, &panel_.cheSlowAnswers, &controls_.combCommPort})
    control->setEnabled(mayStart);
  panel_.comStop_Download.setEnabled(!mayStart);
  panel_.comSelectSeen.setEnabled(room_.lock.free());
  panel_.comLowerBaud.setEnabled(room_.lock.free());
}

void DownloadRoom::showPlan() {
  const engine::Job job = readJob(panels_, false);
  std::string text = engine::planText(engine::planLines(job, engine::planJob(job)), 0);
  for (const images::ImageSlot* slot : images_.slots.both()) {
    if (slot->facts.caption().empty()) continue;
    text += "\n\n" + slot->frame.caption() + "\n" + slot->facts.caption();
    if (!slot->warnings.caption().empty()) text += "\n" + slot->warnings.caption();
  }
  dialogs_.help(panel_.comPlan.caption(), text);
}

void DownloadRoom::program() {
  run(Mode::Once);
}

void DownloadRoom::programRepeatedly() {
  run(Mode::Repeat);
}

void DownloadRoom::programOnFixedLink() {
  panel_.cheTL.setValue(true);
  run(Mode::FixedLink);
  panel_.cheTL.setValue(false);
}

void DownloadRoom::tryLowerBaud() {
  const int baud = room_.results.remedy().baud;
  if (baud == 0 || room_.activity.busy()) return;
  const auto& rates = panel_.cobBaudMax.items();
  const auto place = std::find(rates.begin(), rates.end(), std::to_string(baud));
  panel_.cobBaudMax.userPick(static_cast<int>(place - rates.begin()));
  run(lastMode_);
}

void DownloadRoom::run(Mode mode) {
  const auto running = room_.activity.begin();
  if (!running) return;
  lastMode_ = mode;
  room_.services.stop.clear();
  bool handedOver = false;
  const PortTaken port(room_.services.lease);
  if (prepare()) {
    engine::Outcome outcome = round(mode);
    while (settle(outcome) && mode == Mode::Repeat && !room_.activity.closing()) {
      countDown();
      outcome = round(mode);
    }
    handedOver = outcome.passed() && wantsPort();
  }
  room_.lock.toFree();
  if (!handedOver) return;
  room_.view.lamp(false);  // lit again when the terminal has the same port
  takePort();
}

// False: the job cannot start, and the user has been told. Nothing has been sent then.
bool DownloadRoom::prepare() {
  if (!images_.state.imageValid) {
    dialogs_.message(platform::kTitle, "    Please open code file.   ", platform::BoxIcon::Information);
    room_.results.end(engine::refused(engine::RunKind::Chip, "Please open code file."), panels_.model.name(), {});
    return false;
  }
  room_.lock.toBusy();
  const std::string why = refusal();
  if (!why.empty())
    room_.results.end(engine::refused(engine::RunKind::Chip, why), panels_.model.name(),
                      images_.counters.numberInHand());
  return why.empty();
}

std::string DownloadRoom::refusal() {
  const auto stopAsked = [this] { return room_.activity.closing() || room_.services.stop.requested(); };
  if (images_.panel.cekReloadFile.value()) {
    const images::ReloadResult result = images_.reloader.reload(stopAsked);
    if (result == images::ReloadResult::Stopped) return "Operation stopped. ";
    if (result == images::ReloadResult::Failed) return "The file could not be loaded again.";
  }
  if (!images_.state.imageValid) return "The file could not be loaded again.";
  if (!books_.chosen() && !images_.counters.armForRun()) return "The serial number could not be written.";
  if (panels_.model.traits().measuresOscillator() && !options_.checkFrequency())
    return "The R/C frequency is out of range.";
  if (std::string why = booksRefusal(); !why.empty()) return why;
  // Stop, or the window's close, while the file was waited for: a run that began now would keep the window open.
  if (stopAsked()) return "Operation stopped. ";
  return {};
}

std::string DownloadRoom::booksRefusal() {
  if (!books_.chosen()) return {};
  std::string why = books_.open(readJob(panels_, false), images_.counters.switchedOn());
  if (!why.empty()) dialogs_.message(platform::kTitle, why, platform::BoxIcon::Warning);
  return why;
}

std::string DownloadRoom::numberInHand() const {
  return books_.chosen() ? books_.numberInHand() : images_.counters.numberInHand();
}

// One chip, with the window's state as it is now: the images carry the next serial number.
engine::Outcome DownloadRoom::round(Mode mode) {
  engine::Job job = readJob(panels_, mode == Mode::FixedLink);
  job.handOver = mode != Mode::Repeat && wantsPort();
  room_.results.turnRounds.applyTo(job);
  room_.results.begin(engine::RunKind::Chip, job);
  const engine::Outcome outcome = engine::ChipRun(job, room_.services, room_.view).program(books_.books());
  room_.results.turnRounds.note(job, outcome);
  return outcome;
}

// True: the chip is good, and the next one can have its number.
bool DownloadRoom::settle(const engine::Outcome& outcome) {
  if (outcome.wrongModel) images_.state.imageValid = false;
  room_.results.end(outcome, panels_.model.name(), numberInHand());
  if (books_.chosen()) return books_.takesMore() && outcome.passed();
  return outcome.passed() && images_.counters.advanceAfterSuccess();
}

// Gives the operator time to change the chip. Stop takes effect at the end of the count.
void DownloadRoom::countDown() {
  for (int n = platform::wholeOf(panel_.comDalay_ReDownLoad.text()); n >= 1; --n) {
    room_.view.appendOver("\n\nProgram succeed.\n\nAfter a few seconds, re-connection will continue.  " +
                          std::to_string(n));
    platform::delay(room_.services.loop, platform::Millis(1000));
    if (room_.activity.closing()) return;
  }
}

void DownloadRoom::checkChip() {
  const auto running = room_.activity.begin();
  if (!running) return;
  const PortTaken port(room_.services.lease);
  room_.lock.toBusy();
  room_.services.stop.clear();
  const engine::Job job = readJob(panels_, false);
  room_.results.begin(engine::RunKind::Check, job);
  const auto outcome = engine::ChipRun(job, room_.services, room_.view).check();
  room_.results.end(outcome, panels_.model.name(), {});
  room_.lock.toFree();
}

void DownloadRoom::stop() {
  room_.services.stop.request();
  room_.services.lease.clearIn();
  room_.services.lease.link().clearOut();
  room_.services.lease.close();
  room_.view.lamp(false);
  if (!room_.activity.busy()) room_.lock.toFree();
}

}  // namespace kvr::download
