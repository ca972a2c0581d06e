// One simulated device as kvr-target handles it, whatever kind it is.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "sim/device.h"
#include "sim/target_options.h"

namespace sim {

class TargetDevice {
 public:
  virtual ~TargetDevice() = default;
  virtual Device& device() = 0;
  virtual void powerOn(Micros at) = 0;
  virtual void powerOff(Micros at) = 0;
  virtual int releases() const = 0;    // how often its work was done
  virtual bool inSession() const = 0;  // in the middle of a conversation
  // The parity of a host that does everything right and sends these bytes next, if any: a pseudo-terminal carries none.
  virtual char parityOf(int baud, std::span<const std::uint8_t> next) const = 0;
  virtual std::string report() const = 0;  // JSON
};

// The device number `index` (from 0) that the options ask for; null and a reason when there is none such.
std::unique_ptr<TargetDevice> makeTargetDevice(const TargetOptions& options, int index, std::string& error);

}  // namespace sim
