// After its answer a device has something else to do for a moment, and hears nothing.
#pragma once

#include "sim/device.h"

namespace sim {

class Deafness {
 public:
  // An answer leaves until `end`; the device listens again so long after it.
  void answered(Micros end, Micros time) { from_ = end, until_ = end + time; }
  // Of a byte that has arrived in full at `end`: it began before the device listened.
  bool swallows(Micros end, const Line& line) const {
    return until_ > from_ && static_cast<double>(end) - line.byteMicros() < static_cast<double>(until_);
  }
  Micros answerEnd() const { return from_; }

 private:
  Micros from_ = -kSecond, until_ = -kSecond;
};

}  // namespace sim
