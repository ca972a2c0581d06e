// Which device each of the port numbers COM1 to COM16 means. A pure function of what the settings say, what was
// found on the machine and what earlier days remember.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

namespace kvr::platform {

inline constexpr int kPortCount = 16;

struct FoundDevice {
  std::string path;         // "/dev/ttyUSB0"
  std::string identity;     // of the adapter, the same at every plugging: "1a86:7523:5&2" or the path
  std::string description;  // for the user
  bool usb = false;
};

struct PortEntry {
  std::string device;       // empty: the number has none
  std::string description;  // for the user
  std::string identity;     // what to remember for this number; empty for a number named by the settings
  bool present = false;     // the device is there now
  bool usb = false;
};

using PortMap = std::array<PortEntry, kPortCount>;  // COM1 at index 0

// Numbers with an entry in `named` keep it. A device that has had a number before gets it again; the others take the
// free numbers, USB adapters first, sparing the numbers of devices that are remembered and away as long as others are
// free. When no number is left, an adapter takes that of a device without USB.
PortMap assignPorts(const std::map<int, std::string>& named, std::vector<FoundDevice> found,
                    const std::map<int, std::string>& remembered);

// What to remember of a map, by number: a device keeps its number when others come, whether it has a USB identity or
// only its path.
std::map<int, std::string> identitiesOf(const PortMap& map);

}  // namespace kvr::platform
