// What a run shows in the window: the message pane, the lamp, the progress bar, the labels of the connected chip.
#pragma once

#include "download/beeper.h"
#include "download/download_panel.h"
#include "engine/run_view.h"
#include "options/options_room.h"
#include "platform/controls.h"

namespace kvr::download {

// The controls of the main window that runs of every kind write.
struct MainControls {
  platform::TextBox& textMsg;
  platform::ComboBox& combCommPort;  // list index + 1 is the port number
  platform::Lamp& imgOpen_sys;       // on: a sequence has the port open
  platform::ProgressBar& ProgressBar1;
  platform::Label& labKbyte;
};

class DisplayPanel : public engine::RunView {
 public:
  DisplayPanel(platform::EventLoop& loop, platform::Dialogs& dialogs, MainControls controls,
               options::OptionsRoom& options, Verdict& verdict);

  void clearText() override;
  void say(const std::string& line) override;
  void append(const std::string& text) override;
  void appendOver(const std::string& text) override;
  void enter(engine::Stage stage) override;
  void progress(const engine::Progress& progress) override;
  void progressDone() override;
  void lamp(bool portOpen) override;
  void beep(int times) override;
  void portStatus(const std::string& why) override;
  void chipLabels(const std::vector<std::string>& texts) override;
  void clearChipLabels() override;
  void box(const std::string& text) override;

  std::function<void(const std::string&)> onPortStatus;  // why the port is not open; empty: it is

 private:
  platform::Dialogs& dialogs_;
  Beeper beeper_;
  MainControls controls_;
  options::OptionsRoom& options_;
  Verdict& verdict_;
  std::string over_;  // what `appendOver` added last, when nothing has come after it
};

}  // namespace kvr::download
