// The machine's serial ports by the numbers that the program uses. Settings: section "Ports", keys "COM1" to "COM16"
// with a device path each, written by the user; section "PortMemory" with the devices that the numbers were given to.
#pragma once

#include "platform/qt/port_map.h"
#include "platform/settings_store.h"

namespace kvr::platform {

class Ports {
 public:
  explicit Ports(SettingsStore& store) : store_(store) {}
  // Looks what is plugged in; true when anything has changed since the last look. Costs some milliseconds.
  bool rescan();
  // The device of a port number, "" for none. Looks again when the number has no device that is there.
  std::string deviceOf(int number);
  const PortMap& map() const { return map_; }
  // What a list shows beside "COM3": "/dev/ttyUSB0  USB Serial", or empty.
  std::string describe(int number) const;

 private:
  void remember();
  SettingsStore& store_;
  PortMap map_;
  bool scanned_ = false;
};

// The entries of the section "Ports".
std::map<int, std::string> namedPorts(const SettingsStore& store);
// The serial devices that the system knows now.
std::vector<FoundDevice> findSerialDevices();

}  // namespace kvr::platform
