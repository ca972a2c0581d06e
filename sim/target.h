// The life of what kvr-target simulates: devices one after another on one wire, their power, and the report of what
// they hold. Knows nothing of terminals or clocks.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sim/target_device.h"
#include "sim/target_options.h"
#include "sim/wire.h"

namespace sim {

class Target {
 public:
  Target(TargetOptions options, Micros now);
  // Why it cannot be; empty when all is well. Otherwise nothing else may be called.
  const std::string& error() const { return error_; }

  Wire& wire() { return wire_; }
  const TargetDevice& current() const { return *devices_.back(); }
  std::optional<Micros> nextDue() const;
  void advanceTo(Micros now);
  void powerCycle(Micros now);

  bool ended() const { return ended_; }  // asked to end after the last release, and it came
  // True once after something worth reporting happened.
  bool takeReportDue() { return std::exchange(reportDue_, false); }
  std::string report() const;  // JSON: the present device, its forerunners in "earlier"

 private:
  bool putIn(Micros now);
  bool isLast() const;  // a board stays; chips follow each other
  void watchForSilence(Micros now);

  TargetOptions options_;
  std::string error_;
  Wire wire_;
  std::vector<std::unique_ptr<TargetDevice>> devices_;
  std::optional<Micros> cycleAt_;
  int releasesSeen_ = 0;
  std::size_t unitsSeen_ = 0;
  bool reportDue_ = true;
  bool ended_ = false;
};

}  // namespace sim
