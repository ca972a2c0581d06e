#include "offline/offline_room.h"

#include "offline/board_help.h"
#include "offline/download_limit.h"
#include "platform/text.h"

namespace kvr::offline {
namespace {

template <std::size_t B, std::size_t O>
IncrementField fieldOf(const platform::CheckBox& box, const platform::ControlArray<platform::TextBox, B>& texts,
                       const platform::ControlArray<platform::OptionButton, O>& forms) {
  IncrementField field;
  const std::string address = platform::padLeft(texts[0].trimmed(), 4);
  field.enabled = box.value();
  field.last = static_cast<int>(platform::hexOf(address));
  field.length = platform::wholeOf(texts[1].text());
  field.next = texts[2].trimmed();
  field.step = platform::wholeOf(texts[3].text());
  for (std::size_t i = 0; i < forms.size(); ++i)
    if (forms[i].value()) field.radix = static_cast<int>(i);
  return field;
}

}  // namespace

OfflineRoom::OfflineRoom(download::RunRoom room, platform::Dialogs& dialogs, const download::JobPanels& panels,
                         images::ImageRoom& images, const platform::TextBox& txtDevice, OfflinePanel& panel)
    : room_(room), dialogs_(dialogs), panels_(panels), images_(images), txtDevice_(txtDevice), panel_(panel) {
  panel_.comTJXZ.onClick = [this] { prepareBoard(); };
  panel_.com_TJXZ_help.onClick = [this] { dialogs_.help(kBoardHelpTitle, boardHelpText()); };
  lockToken_ = room_.lock.changed.watch([this] { panel_.comTJXZ.setEnabled(room_.lock.free()); });
}

void OfflineRoom::refuse(const std::string& words) {
  room_.results.refuse(engine::RunKind::Board, words, panels_.model.name());
}

void OfflineRoom::prepareBoard() {
  const auto running = room_.activity.begin();
  if (!running) return;
  if (!panels_.model.traits().offlineBoard) return refuse("The off-line board does not support this MCU type.");
  const download::PortTaken port(room_.services.lease);
  room_.view.clearText();
  const auto job = readBoardJob();
  if (!job) return;
  room_.lock.toBusy();
  room_.services.stop.clear();
  room_.results.begin(engine::RunKind::Board, job->job, traceFieldsOf(*job));
  BoardRun run(*job, room_.services, room_.view, image_, facts_);
  const engine::Outcome outcome = run.write();
  room_.results.turnRounds.note(job->job, outcome);
  room_.results.end(outcome, panels_.model.name(), {});
  const bool written = outcome.stage >= engine::Stage::Erase;
  if (written && job->inputs.codeIncrement.enabled) keepInCodeBuffer(run.file());
  room_.lock.toFree();
}

// Nothing: it cannot be done, and the user has been told.
std::optional<BoardJob> OfflineRoom::readBoardJob() {
  engine::Job job = download::readJob(panels_, false);
  room_.results.turnRounds.applyTo(job);
  if (!images_.state.codeLoaded()) {
    refuse("Please open code file.");
    return std::nullopt;
  }
  const DownloadLimit limit = readDownloadLimit(panel_.txt_download_max.text());
  if (!limit.refusal.empty()) {
    refuse(limit.refusal);
    return std::nullopt;
  }
  BoardInputs inputs = collectInputs(job);
  inputs.limit = limit.chips;
  return BoardJob{std::move(job), std::move(inputs), panel_.che_staple[0].value()};
}

BoardInputs OfflineRoom::collectInputs(const engine::Job& job) const {
  const images::ImagePanel& counters = images_.panel;
  BoardInputs inputs;
  inputs.record = &panels_.model.record;
  inputs.device = txtDevice_.trimmed();
  inputs.pins = platform::wholeOf(panel_.combPins.text());
  for (std::size_t i = 0; i < inputs.sorter.size(); ++i) inputs.sorter[i] = panel_.che_staple[i + 1].value();
  inputs.options = engine::optionBytesOf(job);
  inputs.codeIncrement = fieldOf(counters.cheAuto_Increase, counters.texAuto_Increase, counters.optAuto_Increase);
  inputs.dataIncrement =
      fieldOf(counters.cheData_Auto_Increase, counters.texData_Auto_Increase, counters.optData_Auto_Increase);
  return inputs;
}

// The bytes of a serial value are the board's from now on, and read FFh in the image, too.
void OfflineRoom::keepInCodeBuffer(const FileBuffer& file) {
  images::ImageBuffer& code = images_.state.CodeBuffer;
  const std::span<const std::uint8_t> kept(file.bytes);
  const std::size_t size = kept.size();
  const auto differs = [&](std::size_t at) { return kept[at] != code.at(static_cast<std::int32_t>(at)); };
  for (std::size_t at = 0; at < size;) {
    std::size_t end = at;
    while (end < size && differs(end)) ++end;
    if (end > at) code.edit(static_cast<std::int32_t>(at), kept.subspan(at, end - at));
    at = end + 1;
  }
}

}  // namespace kvr::offline
