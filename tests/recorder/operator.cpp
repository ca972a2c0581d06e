#include "tests/recorder/operator.h"

#include <stdexcept>

namespace kvr::recorder {

namespace {

template <class T>
T& control(support::FormBench& bench, const std::string& name, int index) {
  T* found = bench.form.registry.findAs<T>(name, index);
  if (!found) throw std::runtime_error("no such control: " + name);
  return *found;
}

constexpr int kOptionRows = 14;
constexpr int kSingle = platform::Control::kSingle;

}  // namespace

Operator::Operator(sim::WireConfig wireConfig) : bench_(std::move(wireConfig)) {
  auto& pane = control<platform::TextBox>(bench_, "textMsg", kSingle);
  pane.changed.connect([this] { watchPane(); });
  pane.appended.connect([this] { watchPane(); });
}

// What is cleared or overwritten is kept as it was.
void Operator::watchPane() {
  const std::string& now = bench_.pane();
  if (!now.starts_with(pane_)) record_.pane(pane_);
  pane_ = now;
}

// The wanted frequency of an internal oscillator stays: not every chip reaches every one.
void Operator::chooseOptions(std::mt19937_64& random) {
  for (int row = 0; row < kOptionRows; ++row) {
    std::vector<platform::OptionButton*> open;
    for (int i = 0; auto* one = bench_.form.registry.findAs<platform::OptionButton>("Option" + std::to_string(row), i);
         ++i)
      if (one->enabled() && one->visible()) open.push_back(one);
    const auto dice = random();
    if (!open.empty()) open[dice % open.size()]->userChoose();
  }
  for (const auto& [name, index] : {std::pair("comWDT_Prescalar", 0),
                                    {"comWDT_Prescalar", 1},
                                    {"com_RC_frequency", 4},
                                    {"com_RC_frequency", 1},
                                    {"com_RC_frequency", 2}}) {
    auto& list = control<platform::ComboBox>(bench_, name, index);
    const auto dice = random();
    if (list.enabled() && list.visible() && !list.items().empty())
      list.userPick(static_cast<int>(dice % list.items().size()));
  }
}

void Operator::stop() {
  control<platform::Button>(bench_, stopButton_, kSingle).press();
}

void Operator::tick(const std::string& name) {
  control<platform::CheckBox>(bench_, name, kSingle).userSet(true);
}

void Operator::choose(const std::string& name, int index) {
  control<platform::OptionButton>(bench_, name, index).userChoose();
}

void Operator::type(const std::string& name, const std::string& text, int index) {
  auto* found = bench_.form.registry.find(name, index);
  if (auto* list = dynamic_cast<platform::ComboBox*>(found)) return list->setText(text);
  auto& box = control<platform::TextBox>(bench_, name, index);
  box.userType(text);
  box.userLeave();
}

void Operator::runProgramOfChip(const sim::Line& line, const sim::Bytes& command) {
  bench_.loop.runFor(Millis(200));
  chip().setApplication(std::make_unique<sim::TriggerApplication>(line, command));
  chip().runApplication(bench_.loop.now().count());
}

void Operator::connectBoard(const sim::BoardConfig& config, Millis after) {
  board_ = std::make_unique<sim::Board>(config);
  bench_.wire.connect(board_.get());
  board_->powerOn((bench_.loop.now() + after).count());
}

void Operator::connectDemo(const sim::DemoConfig& config) {
  demo_ = std::make_unique<sim::DemoFirmware>(config);
  bench_.wire.connect(demo_.get());
  demo_->powerOn(bench_.loop.now().count());
  stopButton_ = "com_Demo_Stop";
}

void Operator::press(const std::string& name, int index, Millis limit) {
  record_.begin(bench_.loop.now().count());
  bool over = false;
  bench_.loop.after(limit, [this, &over] {
    if (!over) stop();
  });
  if (!bench_.press(control<platform::Button>(bench_, name, index))) record_.pane("(still runs after an hour)");
  over = true;
  bench_.loop.runFor(std::chrono::seconds(1));  // beeps and what else is queued
}

void Operator::every(Millis time, std::function<bool()> act) {
  bench_.loop.after(time, [this, time, act = std::move(act)] {
    if (act()) every(time, act);
  });
}

std::string Operator::signName() const {
  constexpr const char* kNames[] = {"READY", "WAITING", "WORKING", "PASS", "PASS IN PART", "FAIL"};
  const auto value = static_cast<std::size_t>(bench_.form.download.verdict.value());
  return value < std::size(kNames) ? kNames[value] : "sign " + std::to_string(value);
}

int Operator::goodChips() const {
  return std::stoi("0" + bench_.form.registry.findAs<platform::TextBox>("txtWrite_OK_Count")->trimmed());
}

void Operator::keepMemory() {
  if (bench_.chip) {
    record_.memory("flash", chip().flash());
    record_.memory("options", chip().options());
    record_.remark(chip().violationText());
    for (const auto& note : chip().journal().notes()) record_.remark(std::to_string(note.at) + " " + note.text);
  }
  if (board_) {
    record_.memory("board", board_->memory().main);
    record_.memory("second bank", board_->memory().second);
  }
  if (demo_) record_.memory("flash", demo_->memory().bytes());
}

Record Operator::takeRecord() {
  for (const sim::Unit& unit : bench_.wire.log()) record_.unit(unit);
  record_.pane(pane_);
  for (const auto& shown : bench_.dialogs.shown) record_.box(shown.kind + " " + shown.title, shown.text);
  for (const auto& beep : bench_.dialogs.beeps) record_.remark("beep " + std::to_string(beep.count()));
  keepMemory();
  record_.sign(signName());
  return std::move(record_);
}

}  // namespace kvr::recorder
