#include "tests/recorder/operator.h"

namespace kvr::recorder {

namespace {

constexpr int kOptionRows = 14;

}  // namespace

Operator::Operator(sim::WireConfig wireConfig) : FormBench(std::move(wireConfig)) {
  form.main.textMsg.changed.connect([this] { watchPane(); });
  form.main.textMsg.appended.connect([this] { watchPane(); });
}

// What is cleared or overwritten is kept as it was.
void Operator::watchPane() {
  if (!pane().starts_with(pane_)) record_.pane(pane_);
  pane_ = pane();
}

// The wanted frequency of an internal oscillator stays: not every chip reaches every one.
void Operator::chooseOptions(std::mt19937_64& random) {
  for (int row = 0; row < kOptionRows; ++row) {
    std::vector<platform::OptionButton*> open;
    for (int i = 0; auto* one = form.registry.findAs<platform::OptionButton>("Option" + std::to_string(row), i); ++i)
      if (one->enabled() && one->visible()) open.push_back(one);
    const auto dice = random();
    if (!open.empty()) open[dice % open.size()]->userChoose();
  }
  for (const auto& [name, index] : {std::pair("comWDT_Prescalar", 0),
                                    {"comWDT_Prescalar", 1},
                                    {"com_RC_frequency", 4},
                                    {"com_RC_frequency", 1},
                                    {"com_RC_frequency", 2}}) {
    auto& list = control<platform::ComboBox>(name, index);
    const auto dice = random();
    if (list.enabled() && list.visible() && !list.items().empty())
      list.userPick(static_cast<int>(dice % list.items().size()));
  }
}

void Operator::type(const std::string& name, const std::string& text, int index) {
  auto* found = form.registry.find(name, index);
  if (auto* list = dynamic_cast<platform::ComboBox*>(found)) return list->setText(text);
  auto& box = control<platform::TextBox>(name, index);
  box.userType(text);
  box.userLeave();
}

void Operator::runProgramOfChip(const sim::Line& line, const sim::Bytes& command) {
  loop.runFor(Millis(200));
  chip->setApplication(std::make_unique<sim::TriggerApplication>(line, command));
  chip->runApplication(loop.now().count());
}

void Operator::pressAndWait(const std::string& name, int index, Millis limit) {
  record_.begin(loop.now().count());
  bool over = false;
  loop.after(limit, [this, &over] {
    if (!over) stop();
  });
  if (!press(control<platform::Button>(name, index))) record_.pane("(still runs after an hour)");
  over = true;
  loop.runFor(std::chrono::seconds(1));  // beeps and what else is queued
}

void Operator::every(Millis time, std::function<bool()> act) {
  loop.after(time, [this, time, act = std::move(act)] {
    if (act()) every(time, act);
  });
}

namespace {

std::string nameOf(download::VerdictKind sign) {
  constexpr const char* kNames[] = {"READY", "WAITING", "WORKING", "PASS", "PASS IN PART", "FAIL"};
  const auto value = static_cast<std::size_t>(sign);
  return value < std::size(kNames) ? kNames[value] : "sign " + std::to_string(value);
}

}  // namespace

void Operator::keepMemory() {
  if (chip) {
    record_.memory("flash", chip->flash());
    record_.memory("options", chip->options());
    record_.remark(chip->violationText());
    for (const auto& note : chip->journal().notes()) record_.remark(std::to_string(note.at) + " " + note.text);
  }
  if (board) {
    record_.memory("board", board->memory().main);
    record_.memory("second bank", board->memory().second);
  }
  if (demo) record_.memory("flash", demo->memory().bytes());
}

Record Operator::takeRecord() {
  for (const sim::Unit& unit : wire.log()) record_.unit(unit);
  record_.pane(pane_);
  for (const auto& shown : dialogs.shown) record_.box(shown.kind + " " + shown.title, shown.text);
  for (const auto& beep : dialogs.beeps) record_.remark("beep " + std::to_string(beep.count()));
  keepMemory();
  record_.sign(nameOf(form.download.verdict.value()));
  return std::move(record_);
}

}  // namespace kvr::recorder
