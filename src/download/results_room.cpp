#include "download/results_room.h"

#include "platform/text.h"

namespace kvr::download {
namespace {

VerdictKind verdictOf(const engine::Outcome& outcome) {
  if (outcome.kind == engine::RunKind::Check) return VerdictKind::Idle;  // nothing was programmed
  switch (outcome.ending) {
    case engine::Ending::Passed:
      return VerdictKind::Pass;
    case engine::Ending::PassedInPart:
      return VerdictKind::PassInPart;
    default:
      return VerdictKind::Fail;
  }
}

// A look at a chip programs nothing, and a trigger that was sent is followed by its download, which has a line of its
// own.
bool isLogged(const engine::Outcome& outcome) {
  if (outcome.kind == engine::RunKind::Check) return false;
  return outcome.kind != engine::RunKind::Trigger || !outcome.passed();
}

std::vector<int> ratesOf(const platform::ComboBox& box) {
  std::vector<int> rates;
  for (const std::string& item : box.items()) rates.push_back(platform::wholeOf(item));
  return rates;
}

bool counts(const engine::Outcome& outcome) {
  return outcome.passed() && outcome.kind == engine::RunKind::Chip;
}

}  // namespace

ResultsRoom::ResultsRoom(platform::World& world, DownloadPanel& panel, platform::TextBox& textMsg, TraceRoom& traces)
    : world_(world), panel_(panel), textMsg_(textMsg), traces_(traces) {
  panel_.comClear_OK_Count.onClick = [this] { clearCount(); };
  // An offer to lower what has been changed meanwhile might raise it.
  baudToken_ = panel_.cobBaudMax.changed.watch([this] {
    if (remedy_.baud > 0 && platform::wholeOf(panel_.cobBaudMax.text()) != offeredAt_) offer({});
  });
}

void ResultsRoom::begin(engine::RunKind kind, const engine::Job& job, const engine::TraceFields& more) {
  traces_.begin(kind, job, more);
  offer({});
  panel_.verdict.set(VerdictKind::Waiting);
}

// The log line is on the disk before anybody reads the verdict.
void ResultsRoom::end(const engine::Outcome& outcome, const std::string& model, const std::string& serialNumber) {
  const RunRecord record{outcome, world_.clock.dateTime(), model, serialNumber};
  if (counts(outcome)) count();
  if (isLogged(outcome)) writeLog(record);
  history_.add(record);
  panel_.comLastRun.setEnabled(history_.last() != nullptr);
  panel_.verdict.set(verdictOf(outcome));
  traces_.end(outcome);
  offer(remedyOf(outcome, model, ratesOf(panel_.cobBaudMax)));
  const bool programmed = outcome.kind == engine::RunKind::Chip || outcome.kind == engine::RunKind::Demo;
  if (outcome.passed() && programmed && panel_.optBeepYes.value()) world_.dialogs.beep();
  if (!outcome.box.empty()) world_.dialogs.message(platform::kTitle, outcome.box, platform::BoxIcon::Information);
}

void ResultsRoom::refuse(engine::RunKind kind, const std::string& why, const std::string& model) {
  world_.dialogs.message(platform::kTitle, why, platform::BoxIcon::Warning);
  end(engine::refused(kind, platform::trim(why)), model, {});
}

void ResultsRoom::forget() {
  offer({});
  if (panel_.verdict.value() > VerdictKind::Working) panel_.verdict.set(VerdictKind::Idle);
}

void ResultsRoom::offer(const Remedy& remedy) {
  remedy_ = remedy;
  offeredAt_ = platform::wholeOf(panel_.cobBaudMax.text());
  panel_.comSelectSeen.setVisible(!remedy.model.empty());
  panel_.comLowerBaud.setVisible(remedy.baud > 0);
  if (!remedy.model.empty()) panel_.comSelectSeen.setCaption(selectText(remedy));
  if (remedy.baud > 0) panel_.comLowerBaud.setCaption(lowerBaudText(remedy));
}

void ResultsRoom::count() {
  const std::string count = platform::numberText(platform::valueOf(panel_.txtWrite_OK_Count.text()) + 1);
  panel_.txtWrite_OK_Count.setText(" " + count);
  storeCount(count);
}

void ResultsRoom::clearCount() {
  panel_.txtWrite_OK_Count.setText("0");
  storeCount("0");
}

void ResultsRoom::storeCount(const std::string& count) {
  world_.store.set("Settings", "Write_OK_Count", count);
  if (const auto saved = world_.store.flush(); !saved)
    textMsg_.appendLine("The count of good chips could not be saved: " + saved.error);
}

}  // namespace kvr::download
