#include "platform/qt/serial_device.h"

namespace kvr::platform {

DeviceGuard::DeviceGuard(const std::string&) {}

DeviceGuard::~DeviceGuard() = default;

void DeviceGuard::prepare(ModemLines) {}

std::size_t bytesInDriver(std::intptr_t) {
  return 0;
}

std::vector<std::uint8_t> waitingBytes(std::intptr_t, std::size_t) {
  return {};
}

void drainDevice(std::intptr_t) {}

bool deviceGone(std::intptr_t) {
  return true;
}

bool isPseudoTerminal(std::intptr_t) {
  return false;
}

std::optional<LineBits> lineBitsOf(std::intptr_t) {
  return std::nullopt;
}

std::optional<FlowControl> flowControlOf(std::intptr_t) {
  return std::nullopt;
}

std::optional<InputLines> inputLinesOf(std::intptr_t) {
  return std::nullopt;
}

}  // namespace kvr::platform
