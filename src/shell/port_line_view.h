// The line under the port box, and the only one that writes it: the device that the number in the box means, or why a
// sequence could not open that port. What the terminal does with its own port is no business of this line.
#pragma once

#include <functional>
#include <string>

#include "platform/activity.h"
#include "shell/main_panel.h"

namespace kvr::shell {

class PortLine {
 public:
  PortLine(MainPanel& panel, const platform::Activity& activity);

  // The device of a port number as the system names it, such as "/dev/ttyUSB0  USB Serial"; empty: no device. Without
  // it the line tells failures only.
  std::function<std::string(int number)> deviceOf;

  // The box or the machine's devices have changed. A sequence that runs keeps what the line says of it.
  void follow();
  // A sequence has opened the port (`why` is empty), or could not, or has lost it.
  void opened(const std::string& why);

 private:
  int number() const { return panel_.combCommPort.listIndex() + 1; }
  MainPanel& panel_;
  const platform::Activity& activity_;
  platform::Signal::Token token_;
};

}  // namespace kvr::shell
