#include "download/display_panel.h"

namespace kvr::download {

DisplayPanel::DisplayPanel(platform::EventLoop& loop, platform::Dialogs& dialogs, MainControls controls,
                           options::OptionsRoom& options, Verdict& verdict)
    : dialogs_(dialogs), beeper_(loop, dialogs), controls_(controls), options_(options), verdict_(verdict) {}

void DisplayPanel::clearText() {
  over_.clear();
  controls_.textMsg.clear();
}

void DisplayPanel::say(const std::string& line) {
  over_.clear();
  controls_.textMsg.appendLine(line);
}

void DisplayPanel::append(const std::string& text) {
  over_.clear();
  controls_.textMsg.append(text);
}

void DisplayPanel::appendOver(const std::string& text) {
  std::string pane = controls_.textMsg.text();
  if (!over_.empty() && pane.ends_with(over_)) pane.resize(pane.size() - over_.size());
  controls_.textMsg.setText(pane + text);
  over_ = text;
}

void DisplayPanel::enter(engine::Stage stage) {
  if (stage == engine::Stage::Identify) verdict_.set(VerdictKind::Working);
}

void DisplayPanel::progress(const engine::Progress& progress) {
  controls_.ProgressBar1.setRange(progress.minimum, progress.maximum);
  controls_.ProgressBar1.setValue(progress.value);
  controls_.ProgressBar1.setVisible(true);
  controls_.labKbyte.setCaption(progress.kilobytes);
}

void DisplayPanel::progressDone() {
  controls_.labKbyte.setCaption("");
  controls_.ProgressBar1.setVisible(false);
}

void DisplayPanel::lamp(bool portOpen) {
  controls_.imgOpen_sys.setOn(portOpen);
}

void DisplayPanel::beep(int times) {
  beeper_.beeps(times);
}

void DisplayPanel::portStatus(const std::string& why) {
  if (onPortStatus) onPortStatus(why);
}

void DisplayPanel::chipLabels(const std::vector<std::string>& texts) {
  options_.showChipLabels(texts);
}

void DisplayPanel::clearChipLabels() {
  options_.clearLockLabels();
}

void DisplayPanel::box(const std::string& text) {
  dialogs_.message(platform::kTitle, text, platform::BoxIcon::Information);
}

}  // namespace kvr::download
