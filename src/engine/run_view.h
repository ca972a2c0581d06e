// What a run tells of itself while it goes on. A window shows it, a command line prints it, a test keeps it.
#pragma once

#include <string>
#include <vector>

#include "engine/outcome.h"

namespace kvr::engine {

struct Progress {
  int minimum = 0;
  int maximum = 0;
  int value = 0;
  std::string kilobytes;  // "12.500K"
};

class RunView {
 public:
  virtual ~RunView() = default;

  // --- The message pane. ---
  virtual void clearText() = 0;
  virtual void say(const std::string& line) = 0;     // a new line at its end
  virtual void append(const std::string& text) = 0;  // to the end of the last line
  // The same, in place of what the last call of it added when nothing else was told since: a count.
  virtual void appendOver(const std::string& text) = 0;

  virtual void enter(Stage stage) = 0;
  virtual void progress(const Progress& progress) = 0;
  virtual void progressDone() = 0;
  virtual void lamp(bool portOpen) = 0;
  virtual void beep(int times) = 0;
  virtual void portStatus(const std::string& why) = 0;  // why the port is not open; empty: it is
  // Texts beside the options: what the connected chip holds.
  virtual void chipLabels(const std::vector<std::string>& texts) = 0;
  virtual void clearChipLabels() = 0;
  // A message box in the middle of a run; returns when it has been read.
  virtual void box(const std::string& text) = 0;
};

// Shows nothing.
class SilentView : public RunView {
 public:
  void clearText() override {}
  void say(const std::string&) override {}
  void append(const std::string&) override {}
  void appendOver(const std::string&) override {}
  void enter(Stage) override {}
  void progress(const Progress&) override {}
  void progressDone() override {}
  void lamp(bool) override {}
  void beep(int) override {}
  void portStatus(const std::string&) override {}
  void chipLabels(const std::vector<std::string>&) override {}
  void clearChipLabels() override {}
  void box(const std::string&) override {}
};

}  // namespace kvr::engine
