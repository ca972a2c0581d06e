#include "platform/qt/port_map.h"

#include <algorithm>
#include <optional>

namespace kvr::platform {
namespace {

void give(PortMap& map, int index, const FoundDevice& device) {
  map[static_cast<std::size_t>(index)] = {device.path, device.description, device.identity, true, device.usb};
}

// A machine may have more built-in ports than there are numbers; an adapter is what the user has plugged in.
std::optional<int> lastWithoutUsb(const PortMap& map) {
  for (int i = kPortCount - 1; i >= 0; --i) {
    const PortEntry& entry = map[static_cast<std::size_t>(i)];
    if (!entry.identity.empty() && !entry.usb) return i;
  }
  return std::nullopt;
}

// The first number that nothing holds; numbers that belong to an absent adapter only when nothing else is left.
std::optional<int> freeNumber(const PortMap& map, const std::map<int, std::string>& named,
                              const std::map<int, std::string>& remembered) {
  for (const bool spare : {true, false})
    for (int i = 0; i < kPortCount; ++i)
      if (map[static_cast<std::size_t>(i)].device.empty() && !named.count(i + 1) &&
          (!spare || !remembered.count(i + 1)))
        return i;
  return std::nullopt;
}

}  // namespace

PortMap assignPorts(const std::map<int, std::string>& named, std::vector<FoundDevice> found,
                    const std::map<int, std::string>& remembered) {
  PortMap map;
  for (const auto& entryOfSettings : named) {
    const int number = entryOfSettings.first;
    const std::string& path = entryOfSettings.second;  // no structured binding: not every compiler captures one
    if (number < 1 || number > kPortCount || path.empty()) continue;
    PortEntry& entry = map[static_cast<std::size_t>(number - 1)];
    entry.device = path;
    const auto same =
        std::find_if(found.begin(), found.end(), [&path = path](const FoundDevice& f) { return f.path == path; });
    if (same == found.end()) continue;
    entry.description = same->description;
    found.erase(same);
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const FoundDevice& a, const FoundDevice& b) { return a.usb != b.usb ? a.usb : a.path < b.path; });
  std::vector<FoundDevice> rest;
  for (const auto& device : found) {
    const auto known = std::find_if(remembered.begin(), remembered.end(), [&](const auto& pair) {
      return pair.second == device.identity && pair.first >= 1 && pair.first <= kPortCount &&
             map[static_cast<std::size_t>(pair.first - 1)].device.empty();
    });
    if (known == remembered.end())
      rest.push_back(device);
    else
      give(map, known->first - 1, device);
  }
  for (const auto& device : rest) {
    const auto index = freeNumber(map, named, remembered);
    if (const auto number = index || !device.usb ? index : lastWithoutUsb(map)) give(map, *number, device);
  }
  return map;
}

std::map<int, std::string> identitiesOf(const PortMap& map) {
  std::map<int, std::string> identities;
  for (std::size_t i = 0; i < map.size(); ++i)
    if (!map[i].identity.empty()) identities[static_cast<int>(i) + 1] = map[i].identity;
  return identities;
}

}  // namespace kvr::platform
