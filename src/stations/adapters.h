// The serial ports of this machine as a station keeps them: by their adapter, which is found again whatever it is
// plugged into, and when the system gives it another name.
#pragma once

#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

#include "platform/qt/ports.h"

namespace kvr::stations {

struct Adapter {
  std::string identity;  // what is remembered
  std::string device;    // "/dev/ttyUSB0"
  std::string text;      // for the user: "COM3  /dev/ttyUSB0  USB Serial"
};

class Adapters : public QObject {
 public:
  explicit Adapters(platform::SettingsStore& store);
  // What is plugged in, or has a number.
  std::vector<Adapter> list();
  std::string deviceOf(const std::string& identity);  // "": it is not there
  std::string textOf(const std::string& identity);    // also while it is not there
  std::function<void()> changed;                      // something was plugged in or pulled out

 private:
  void look();
  void watch();
  platform::Ports ports_;
  QFileSystemWatcher files_;
  QTimer settle_;  // an adapter's files and their rights appear one after another
};

}  // namespace kvr::stations
