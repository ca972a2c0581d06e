// Which device a port number means, kept for as long as somebody asks for that. The machine's numbers may move
// when adapters come and go; a run that closes and opens its port must come back to the same chip.
#pragma once

#include <string>

#include "platform/serial_link.h"

namespace kvr::platform {

// The part of it that every serial link shares.
class HeldDevice {
 public:
  void hold() { holding_ = true; }
  void release() {
    holding_ = false;
    device_.clear();
  }
  // Another number is another choice; the same one again changes nothing.
  void numberSet(bool another) {
    if (another) device_.clear();
  }
  void opened(const std::string& device) {
    if (holding_) device_ = device;
  }
  // The device to open; empty: ask which one the number means now.
  const std::string& device() const { return device_; }

 private:
  bool holding_ = false;
  std::string device_;
};

// Holds the link's device for a run, from its first open to the end of this object.
class DeviceHold {
 public:
  explicit DeviceHold(SerialLink& link) : link_(link) { link_.holdDevice(); }
  ~DeviceHold() { link_.releaseDevice(); }
  DeviceHold(const DeviceHold&) = delete;
  DeviceHold& operator=(const DeviceHold&) = delete;

 private:
  SerialLink& link_;
};

}  // namespace kvr::platform
