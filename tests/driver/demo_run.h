// Plays the user at the window: presses the Program button once the file is in, waits for the verdict, prints the
// message pane and takes a picture. For the script that shows the program where there is no display.
#pragma once

#include <QTimer>
#include <functional>

#include "shell/qt/application.h"

namespace kvr::window {

class DemoRun {
 public:
  DemoRun(Application& program, std::function<void(bool ok)> ended) : program_(program), ended_(std::move(ended)) {}
  void start(const QString& picture);

 private:
  void press();
  void end();
  Application& program_;
  std::function<void(bool)> ended_;
  QString picture_;
  platform::Signal::Token token_;
  QTimer limit_;
};

}  // namespace kvr::window
