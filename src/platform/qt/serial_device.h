// What QtSerialPort does not do about a serial device: telling why it cannot be opened, keeping DTR still over a close
// and an open, asking how much has really gone out and which settings the device took, the adapter's quick mode.
// Systems that lack one of these answer neutrally.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/qt/line_settings.h"
#include "platform/serial_link.h"

namespace kvr::platform {

// The states that the modem lines shall have.
struct ModemLines {
  bool dtr = true;
  bool rts = true;
};

// Holds the device open for a moment, so that its settings outlive the change from one opening to the next.
class DeviceGuard {
 public:
  explicit DeviceGuard(const std::string& device);
  ~DeviceGuard();
  DeviceGuard(const DeviceGuard&) = delete;
  DeviceGuard& operator=(const DeviceGuard&) = delete;
  // Why the system refused the device: absent, denied, busy; None: it did not.
  const PortError& error() const { return error_; }
  // No drop of DTR and RTS when the port closes (a target that listens to them would be reset at every change of the
  // baud), the lines as they shall be at once (the system raises both at every open), and the adapter's low-latency
  // mode where its driver has one.
  void prepare(ModemLines lines);

 private:
  int handle_ = -1;
  PortError error_;
};

// Bytes that the system has taken and not yet sent.
std::size_t bytesInDriver(std::intptr_t handle);
// Bytes that wait in the device, at most so many, without waiting for any; none when the system does not say.
std::vector<std::uint8_t> waitingBytes(std::intptr_t handle, std::size_t most);
// Waits until the last byte has left the device; only when nothing is left in the driver.
void drainDevice(std::intptr_t handle);
// The device of the handle is gone.
bool deviceGone(std::intptr_t handle);
bool isPseudoTerminal(std::intptr_t handle);
// What the device holds now of what it was told; nothing when the system does not say.
struct LineBits {
  bool parity = false;
  bool odd = false;
  int dataBits = 8;
  bool twoStop = false;
};
std::optional<LineBits> lineBitsOf(std::intptr_t handle);
// What a device did not take of the settings that it was given: "parity", "7 data bits", ...; empty: it took all.
std::string refusedPart(const LineSettings& wanted, const std::optional<LineBits>& held);
// Nothing when the system does not say.
std::optional<FlowControl> flowControlOf(std::intptr_t handle);
std::optional<InputLines> inputLinesOf(std::intptr_t handle);
int trueBaudOf(std::intptr_t handle);  // 0 when the system does not say
// The adapter passes received bytes on at once instead of collecting them for some 16 ms.
void requestLowLatency(std::intptr_t handle);

}  // namespace kvr::platform
