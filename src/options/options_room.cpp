#include "options/options_room.h"

#include <algorithm>

#include "options/option_table.h"
#include "platform/text.h"

namespace kvr::options {
namespace {

using platform::ComboBox;
using platform::OptionButton;

constexpr std::string_view kChangeable = "Step4: Active following options after Next-PowerUp/Cold Reset";
constexpr std::string_view kFixed = "Step4: Options";
constexpr const char* kLowPowerNote = "     如需低功耗,16MHz 以下振荡器增益可选 1/2 gain";
constexpr std::size_t kFirstReportLine = 1;
constexpr std::size_t kReportFrame = 15;  // the frame around the report is made of this label, the next one and label 0

template <class T, std::size_t N>
void hide(platform::ControlArray<T, N>& array) {
  for (std::size_t i = 0; i < N; ++i) array[i].setVisible(false);
}

bool inLayout(const std::vector<PanelGroup>& groups, const platform::Control* control) {
  return std::any_of(groups.begin(), groups.end(), [&](const PanelGroup& group) { return group.holds(control); });
}

}  // namespace

OptionsRoom::OptionsRoom(platform::Dialogs& dialogs, OptionPanel& panel, const catalogue::SelectedModel& model,
                         platform::UiLock& lock, platform::TextBox& textMsg, platform::Label& stepFrame)
    : dialogs_(dialogs), panel_(panel), model_(model), lock_(lock), textMsg_(textMsg), stepFrame_(stepFrame) {
  set_.wanted = set_.reported = defaultBytes(model.traits());
  lockToken_ = lock_.changed.watch([this] { applyEnableRules(); });
  connectButtons();
  connectPins();
  panel_.com_RC_frequency[5].onLeave = [this] {
    if (panel_.com_RC_frequency[5].visible()) checkFrequency();
  };
}

void OptionsRoom::connectButtons() {
  for (int row = 9; row < OptionPanel::kRows; ++row)
    for (auto* button : panel_.optionButtons(row)) button->onClick = [this] { applyEnableRules(); };
  panel_.Option0[0].onClick = [this] { tieClockAndReset(0); };
  panel_.Option1[0].onClick = [this] { tieClockAndReset(1); };
}

// The reset pin is free for other use only while an external clock runs, so the two lines keep each other possible.
void OptionsRoom::tieClockAndReset(int clicked) {
  if (!traits().longOptions()) return;
  const auto& button = clicked == 0 ? panel_.Option0[0] : panel_.Option1[0];
  auto& forced = clicked == 0 ? panel_.Option1[1] : panel_.Option0[1];
  if (button.value()) forced.setValue(true);
}

void OptionsRoom::showFamilyPanel() {
  textMsg_.clear();
  clearLockLabels();
  hideAll();
  groups_ = layOutPanel(model_.record, panel_);
  stepFrame_.setCaption(std::string(model_.record.noOptions ? kFixed : kChangeable));
  if (model_.record.noOptions) {
    showFixedOptions();
  } else {
    fillLowVoltageList();
    fillRows();
  }
  for (const auto& group : groups_) panel_.Picture2[static_cast<std::size_t>(group.row)].setVisible(true);
  applyEnableRules();
  layoutChanged.emit();
}

std::string OptionsRoom::note() const {
  return traits().lowPowerNote && !model_.record.noOptions ? kLowPowerNote : "";
}

void OptionsRoom::hideAll() {
  hide(panel_.Label8);
  hide(panel_.com_RC_frequency);
  panel_.txt_RC_frequency.setVisible(false);
  hide(panel_.LabOptionC);
  hide(panel_.LabOption);
  hide(panel_.Picture2);
  hide(panel_.comWDT_Prescalar);
  for (std::size_t i = 0; i < panel_.LabOption.size(); ++i) panel_.LabOption[i].setCaption("");
  for (int row = 0; row < OptionPanel::kRows; ++row)
    for (auto* button : panel_.optionButtons(row)) {
      button->setVisible(false);
      button->setValue(false);
    }
}

void OptionsRoom::showFixedOptions() {
  const auto texts = fixedOptionTexts(model_.record);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    panel_.LabOption[i].setCaption(std::string(texts[i]));
    panel_.LabOption[i].setVisible(true);
  }
}

void OptionsRoom::fillLowVoltageList() {
  if (!traits().measuresOscillator()) return;
  const auto choices = lowVoltageChoices(catalogue::voltageClass(model_.record));
  panel_.com_RC_frequency[4].setItems({choices.begin(), choices.end()});
  panel_.com_RC_frequency[4].setListIndex(0);  // where the default of the table is not among them
}

void OptionsRoom::fillRows() {
  const int slot = traits().panelSlot;
  const auto rows = optionRows(slot);
  const char voltageClass = catalogue::voltageClass(model_.record);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    auto* control = panel_.find(rows[i].control, rows[i].index);
    if (control == nullptr) continue;
    if (const auto text = captionText(slot, i, voltageClass); !text.empty())
      control->setProperty(rows[i].property, std::string(text));
    control->setVisible(rows[i].visible && inLayout(groups_, control));
    if (rows[i].property == "Value")
      control->setToolTip(rows[i].enabledFree ? "" : "Only shown: the boot firmware takes no other value");
  }
  if (inLayout(groups_, &panel_.com_RC_frequency[5])) panel_.com_RC_frequency[5].setVisible(true);
}

void OptionsRoom::applyEnableRules() {
  if (model_.record.noOptions) return;
  for (const auto& row : optionRows(traits().panelSlot))
    if (auto* control = panel_.find(row.control, row.index)) control->setEnabled(enabledIn(row, lock_.state()));
  if (lock_.free()) applyWatchdogRule();
  panel_.com_RC_frequency[5].setEnabled(!lock_.busy());  // its check asks the user, which a run cannot wait for
}

// Prescaler and idle choice matter only to a watchdog that the power-up starts.
void OptionsRoom::applyWatchdogRule() {
  const bool starts = chosen("Power_On_Run_WDT_YES");
  for (const auto* key : {"Idle_Run_WDT_YES", "Idle_Run_WDT_NO", "WDT_Prescalar"})
    if (auto* control = controlOf(key)) control->setEnabled(starts);
}

platform::Control* OptionsRoom::controlOf(std::string_view key) const {
  const auto* row = findRow(traits().panelSlot, key);
  return row == nullptr ? nullptr : panel_.find(row->control, row->index);
}

bool OptionsRoom::chosen(std::string_view key) const {
  const auto* button = dynamic_cast<const OptionButton*>(controlOf(key));
  return button != nullptr && button->value();
}

std::string OptionsRoom::controlValue(std::string_view key) const {
  const auto* control = controlOf(key);
  if (control == nullptr) return {};
  return control->property(dynamic_cast<const ComboBox*>(control) != nullptr ? "ListIndex" : "Value");
}

bool OptionsRoom::setControlValue(std::string_view key, const std::string& value) {
  auto* control = controlOf(key);
  if (control == nullptr) return false;
  control->setProperty(dynamic_cast<ComboBox*>(control) != nullptr ? "ListIndex" : "Value", value);
  return true;
}

PanelValues OptionsRoom::readPanel() const {
  PanelValues values{.family = model_.record.family, .noOptions = model_.record.noOptions, .choices = {}};
  for (const auto& row : optionRows(traits().panelSlot))
    if (isChoice(row))
      if (const auto* control = panel_.find(row.control, row.index))
        values.choices[std::string(row.key)] = control->property(row.property);
  values.prescaler = panel_.comWDT_Prescalar[0].trimmed();
  values.wakeUpDelay = panel_.comWDT_Prescalar[1].trimmed();
  values.lowVoltageIndex = panel_.com_RC_frequency[4].listIndex();
  values.trimBand = std::max(0, panel_.com_RC_frequency[1].listIndex());
  values.trimStep = std::max(0, panel_.com_RC_frequency[2].listIndex());
  values.trimFine = platform::wholeOf(panel_.txt_RC_frequency.text());
  return values;
}

void OptionsRoom::composeOptions(std::optional<RcTrim> trim) {
  const auto wanted = options::composeOptions(readPanel(), trim);
  set_.wanted = wanted.bytes;
  set_.wantedWords = wanted.words;
}

void OptionsRoom::refreshChoices() {
  options::refreshChoices(traits(), set_);
}

void OptionsRoom::showChipLabels(const std::vector<std::string>& texts) {
  clearLockLabels();
  for (const std::size_t frame : {std::size_t{0}, kReportFrame, kReportFrame + 1})
    panel_.LabLock[frame].setVisible(true);
  for (std::size_t i = 0; i < texts.size() && kFirstReportLine + i < kReportFrame; ++i) {
    auto& label = panel_.LabLock[kFirstReportLine + i];
    label.setCaption(texts[i]);
    label.setVisible(!texts[i].empty());
    label.setEnabled(true);
  }
}

void OptionsRoom::clearLockLabels() {
  hide(panel_.LabLock);
  for (std::size_t i = 0; i < panel_.LabLock.size(); ++i) panel_.LabLock[i].setCaption("");
}

}  // namespace kvr::options
