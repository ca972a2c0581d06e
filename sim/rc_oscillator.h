// The internal oscillator of families 15 and 16: four bands, each nearly a straight line of frequency over the fine
// value, with the spread of real parts, chosen by two registers. The top two bits of the coarse code choose the band.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip_config.h"

namespace sim {

class RcOscillator {
 public:
  RcOscillator(const RcSetting& setting, std::uint64_t chipSeed);

  // The true frequency in Hz for a pair of register values, each 0..255.
  double frequency(int code, int fine) const;
  // What one measurement of it shows: the truth with this chip's noise, a new draw each time.
  double measured(int code, int fine);

 private:
  struct Band {
    double low = 0;    // Hz at fine 0
    double slope = 0;  // Hz a step
    double bend = 0;   // departs from the line by this much in the middle
  };
  std::array<Band, 4> bands_;
  double noise_;
  std::uint64_t state_;
};

}  // namespace sim
