// The serial ports of this machine, with the user's own names for them.
#pragma once

#include "cli/ports.h"
#include "platform/qt/qt_store.h"

namespace kvr::cli {

class MachinePorts : public Ports {
 public:
  PortsSeen look() override;
  bool exists(const std::string& device) const override;
  void use(const std::string& device) override { device_ = device; }
  const std::string& device() const { return device_; }

 private:
  std::string device_;
};

}  // namespace kvr::cli
