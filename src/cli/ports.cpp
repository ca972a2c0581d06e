#include "cli/ports.h"

#include <algorithm>
#include <charconv>

#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr const char* kNameOne = "Name one with --port; `kvr ports` lists them.";

// What stands for the number at the text's head; nothing unless the whole text is one.
std::optional<int> numberOf(std::string_view text, int base) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return number;
}

std::optional<int> comNumber(std::string_view text) {
  if (platform::upper(std::string(text.substr(0, 3))) != "COM") return std::nullopt;
  return numberOf(text.substr(3), 10);
}

std::string hex4(int number) {
  return platform::hexText(static_cast<std::uint32_t>(number), 4);
}

std::string listed(const PortsSeen& seen) {
  std::string text;
  for (const ListedPort& port : listPorts(seen)) text += "\n  " + port.text();
  return text.empty() ? "No serial port was found. Plug an adapter in." : "The ports of this machine:" + text;
}

PortChoice noPort(std::string problem, const PortsSeen& seen) {
  return {.device = {}, .problem = std::move(problem), .next = listed(seen)};
}

PortChoice byNumber(int number, const PortsSeen& seen) {
  const auto entry = seen.named.find(number);
  if (entry != seen.named.end()) return {.device = entry->second, .problem = {}, .next = {}};
  return noPort("COM" + std::to_string(number) + " names no device: there is no entry for it in the section [Ports].",
                seen);
}

struct UsbName {
  int vendor = 0, product = 0;
  std::optional<std::string> serial;
};

std::optional<UsbName> usbNameOf(std::string_view text) {
  text.remove_prefix(4);
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const std::string_view rest = text.substr(colon + 1);
  const std::size_t second = rest.find(':');
  const auto vendor = numberOf(text.substr(0, colon), 16);
  const auto product = numberOf(rest.substr(0, second), 16);
  if (!vendor || !product) return std::nullopt;
  UsbName name{*vendor, *product, std::nullopt};
  if (second != std::string_view::npos) name.serial = std::string(rest.substr(second + 1));
  return name;
}

PortChoice only(const std::vector<std::string>& devices, const std::string& none, const std::string& several,
                const PortsSeen& seen) {
  if (devices.size() == 1) return {.device = devices.front(), .problem = {}, .next = {}};
  PortChoice choice = noPort(devices.empty() ? none : several, seen);
  if (!devices.empty()) choice.next += std::string("\n") + kNameOne;
  return choice;
}

PortChoice byUsb(std::string_view wanted, const PortsSeen& seen) {
  const auto name = usbNameOf(wanted);
  if (!name) return noPort("\"" + std::string(wanted) + "\" is no usb:VID:PID[:SERIAL].", seen);
  std::vector<std::string> devices;
  for (const PortInfo& port : seen.found)
    if (port.usb && port.vendor == name->vendor && port.product == name->product &&
        (!name->serial || port.serial == *name->serial))
      devices.push_back(port.device);
  return only(devices, "No adapter " + std::string(wanted) + " is plugged in.",
              "Several adapters are " + std::string(wanted) + ".", seen);
}

// Adapters, and what the user has named; not the sockets of a mainboard, where seldom anything is.
PortChoice theOnly(const PortsSeen& seen, const Ports& ports) {
  std::vector<std::string> devices;
  const auto add = [&](const std::string& device) {
    if (std::find(devices.begin(), devices.end(), device) == devices.end()) devices.push_back(device);
  };
  for (const PortInfo& port : seen.found)
    if (port.usb) add(port.device);
  for (const auto& [number, device] : seen.named)
    if (ports.exists(device)) add(device);
  return only(devices, "No serial adapter is plugged in.", "There are several serial adapters.", seen);
}

}  // namespace

PortChoice choosePort(std::string_view wanted, Ports& ports) {
  // A look at what is plugged in takes longer than all the rest of the start.
  const bool isPath = wanted.find('/') != std::string_view::npos;
  if (isPath && ports.exists(std::string(wanted))) return {.device = std::string(wanted), .problem = {}, .next = {}};
  const PortsSeen seen = ports.look();
  if (wanted.empty()) return theOnly(seen, ports);
  if (const auto number = comNumber(wanted)) return byNumber(*number, seen);
  if (platform::upper(std::string(wanted.substr(0, 4))) == "USB:") return byUsb(wanted, seen);
  const std::string byId = "/dev/serial/by-id/" + std::string(wanted);
  if (!isPath && ports.exists(byId)) return {.device = byId, .problem = {}, .next = {}};
  return noPort(std::string(wanted) + ": there is no such port.", seen);
}

std::string usbName(const PortInfo& port) {
  return "usb:" + hex4(port.vendor) + ":" + hex4(port.product) + (port.serial.empty() ? "" : ":" + port.serial);
}

std::string ListedPort::text() const {
  std::string text = info.device;
  for (const int number : numbers) text += "  COM" + std::to_string(number);
  if (info.usb) text += "  " + usbName(info);
  return info.description.empty() ? text : text + "  " + info.description;
}

std::vector<ListedPort> listPorts(const PortsSeen& seen) {
  std::vector<ListedPort> ports;
  for (const PortInfo& info : seen.found) ports.push_back({info, {}});
  for (const auto& [number, device] : seen.named) {
    auto port =
        std::find_if(ports.begin(), ports.end(), [&device = device](const auto& p) { return p.info.device == device; });
    if (port == ports.end()) port = ports.insert(ports.end(), {.info = {.device = device}, .numbers = {}});
    port->numbers.push_back(number);
  }
  return ports;
}

}  // namespace kvr::cli
