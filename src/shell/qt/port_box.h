// Boxes with "COM1" to "COM16": the list shows the device of each number beside it, and greys numbers without one.
#pragma once

#include <QComboBox>
#include <functional>

#include "platform/qt/ports.h"
#include "shell/main_form.h"
#include "shell/qt/binding.h"

namespace kvr::window {

// What people see of the machine's ports. `changed` runs after a look that found a difference.
class PortWatch : public QObject {
 public:
  explicit PortWatch(platform::Ports& ports);
  platform::Ports& ports() { return ports_; }
  void look();
  platform::Signal changed;

 private:
  platform::Ports& ports_;
};

QComboBox* makePortBox(platform::EventLoop& loop, platform::ComboBox& control, PortWatch& watch, const QString& name);

}  // namespace kvr::window
