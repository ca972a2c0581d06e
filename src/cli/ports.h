// The machine's serial ports as a command names them: COM3, a path, a name under /dev/serial/by-id, or
// usb:VID:PID[:SERIAL].
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::cli {

struct PortInfo {
  std::string device;       // "/dev/ttyUSB0"
  std::string description;  // for the user; empty: unknown
  std::string byId;         // its name under /dev/serial/by-id; empty: none
  bool usb = false;         // then the three that follow are known
  int vendor = 0, product = 0;
  std::string serial;  // empty: the adapter has none
};

// What is plugged in, and what the user's own list of ports says.
struct PortsSeen {
  std::vector<PortInfo> found;
  std::map<int, std::string> named;  // COM number to device
};

class Ports {
 public:
  virtual ~Ports() = default;
  virtual PortsSeen look() = 0;
  virtual bool exists(const std::string& device) const = 0;
  // The port that all further openings are of.
  virtual void use(const std::string& device) = 0;
};

struct PortChoice {
  std::string device;   // empty: none
  std::string problem;  // why none
  std::string next;     // what to do about it
};
// `wanted`: what the user gave; empty: the only adapter there is.
PortChoice choosePort(std::string_view wanted, Ports& ports);

// One line of the list: a device with all that it is called.
struct ListedPort {
  PortInfo info;
  std::vector<int> numbers;  // COM numbers that the user has given it
  std::string text() const;  // "/dev/ttyUSB0  COM3  usb:1A86:7523  USB Serial"
};
std::vector<ListedPort> listPorts(const PortsSeen& seen);
std::string usbName(const PortInfo& port);  // "usb:1A86:7523", ":" and the serial number after it when there is one

}  // namespace kvr::cli
