// What a run tells, for a user at a console: its messages as they come, and how far each stage is.
#pragma once

#include <functional>
#include <string>

#include "cli/desk.h"
#include "engine/run_view.h"
#include "platform/event_loop.h"

namespace kvr::cli {

class RunConsole : public engine::RunView {
 public:
  explicit RunConsole(const Desk& desk);

  // The wait for a chip ends after so long; 0: never. `onTimeout` is to end the run.
  void limitWait(platform::Millis limit, std::function<void()> onTimeout);
  // Why the port did not open, or went away; empty: it did not.
  const std::string& portTrouble() const { return portTrouble_; }
  // What the chip said of itself and its options, a line each.
  const std::vector<std::string>& report() const { return report_; }

  void clearText() override {}
  void say(const std::string& line) override { out_.say(line); }
  void append(const std::string& text) override { out_.append(text); }
  void appendOver(const std::string&) override {}  // a count of the time: the stage's line shows it
  void enter(engine::Stage stage) override;
  void progress(const engine::Progress& progress) override;
  void progressDone() override;
  void lamp(bool) override {}
  void beep(int) override {}
  void portStatus(const std::string& why) override;
  void chipLabels(const std::vector<std::string>& texts) override { report_ = texts; }  // the messages say the same
  void clearChipLabels() override { report_.clear(); }
  void box(const std::string& text) override { say(text); }

 private:
  void tick();
  platform::EventLoop& loop_;
  Output& out_;
  Stopper& stopper_;
  platform::Timer tickTimer_;
  platform::Timer limitTimer_;
  StageLine line_;
  platform::Instant stageBegan_{0};
  std::string portTrouble_;
  std::vector<std::string> report_;
};

}  // namespace kvr::cli
