// Port numbers from settings, remembered adapters and whatever the machine names: lines "n 3 path" (named), "r 3
// identity" (remembered), "u path identity" and "s path identity" (found, USB or not).
#include "platform/qt/port_map.h"

#include <algorithm>
#include <sstream>

#include "tests/fuzz/targets.h"

namespace kvr::fuzz {

std::string faultOfPortMap(const Bytes& input) {
  std::map<int, std::string> named, remembered;
  std::vector<platform::FoundDevice> found;
  std::istringstream lines(textOf(input));
  std::string kind;
  while (lines >> kind && found.size() < 40) {
    std::string path, identity;
    int number = 0;
    if (kind == "n" && lines >> number >> path) named[number] = path;
    if (kind == "r" && lines >> number >> identity) remembered[number] = identity;
    if ((kind == "u" || kind == "s") && lines >> path >> identity) found.push_back({path, identity, path, kind == "u"});
    lines.clear();
  }
  const platform::PortMap map = platform::assignPorts(named, found, remembered);
  std::size_t present = 0;
  for (int number = 1; number <= platform::kPortCount; ++number) {
    const platform::PortEntry& entry = map[static_cast<std::size_t>(number - 1)];
    const auto wanted = named.find(number);
    if (wanted != named.end() && entry.device != wanted->second) return "a number of the settings has another device";
    const auto same = [&](const platform::FoundDevice& device) { return device.path == entry.device; };
    if (entry.present && std::none_of(found.begin(), found.end(), same)) return "a device that is not there";
    present += entry.present;
  }
  return present > found.size() ? "a device with two numbers" : "";
}

}  // namespace kvr::fuzz
