// A run's view that notes the stages and what the user is told, on top of the view that shows it. Progress and counts
// that replace each other are not noted.
#pragma once

#include "engine/line_recorder.h"
#include "engine/run_view.h"

namespace kvr::engine {

// "prepare", "wait", "identify", ...
std::string stageText(Stage stage);

class TracingView : public RunView {
 public:
  TracingView(RunView& below, LineRecorder& recorder) : below_(below), recorder_(recorder) {}

  void clearText() override { below_.clearText(); }
  void say(const std::string& line) override {
    recorder_.note(TraceEvent::Kind::Said, line);
    below_.say(line);
  }
  void append(const std::string& text) override {
    recorder_.note(TraceEvent::Kind::Said, "..." + text);
    below_.append(text);
  }
  void appendOver(const std::string& text) override { below_.appendOver(text); }
  void enter(Stage stage) override {
    recorder_.note(TraceEvent::Kind::Stage, stageText(stage));
    below_.enter(stage);
  }
  void progress(const Progress& progress) override { below_.progress(progress); }
  void progressDone() override { below_.progressDone(); }
  void lamp(bool portOpen) override { below_.lamp(portOpen); }
  void beep(int times) override { below_.beep(times); }
  void portStatus(const std::string& why) override { below_.portStatus(why); }
  void chipLabels(const std::vector<std::string>& texts) override { below_.chipLabels(texts); }
  void clearChipLabels() override { below_.clearChipLabels(); }
  void box(const std::string& text) override {
    recorder_.note(TraceEvent::Kind::Said, text);
    below_.box(text);
  }

 private:
  RunView& below_;
  LineRecorder& recorder_;
};

}  // namespace kvr::engine
