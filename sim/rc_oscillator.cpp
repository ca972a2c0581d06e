#include "sim/rc_oscillator.h"

namespace sim {

namespace {

std::uint64_t next(std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15U;
  std::uint64_t z = state;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31);
}

double evenly(std::uint64_t& state) {  // -1..1
  return static_cast<double>(next(state) >> 11) / static_cast<double>(1ULL << 52) - 1;
}

}  // namespace

RcOscillator::RcOscillator(const RcSetting& setting, std::uint64_t chipSeed)
    : noise_(setting.noise), state_(setting.seed ? setting.seed : chipSeed ^ 0x5C5C5C5CU) {
  constexpr std::array<std::pair<double, double>, 4> kTypical = {
      {{3.9e6, 9.4e6}, {8.2e6, 17.4e6}, {15.8e6, 33e6}, {29e6, 52e6}}};
  const double speed = 1 + setting.spread * evenly(state_);
  for (std::size_t i = 0; i < bands_.size(); ++i) {
    const auto [low, high] = kTypical[i];
    const double height = (high - low) * (1 - setting.gap) * (1 + setting.slopeSpread * evenly(state_));
    bands_[i].low = low * speed;
    bands_[i].slope = height * speed / 255;
    bands_[i].bend = 0.004 * low * speed * evenly(state_);
  }
}

double RcOscillator::frequency(int code, int fine) const {
  const Band& band = bands_[static_cast<std::size_t>((code >> 6) & 3)];
  const double along = fine / 255.0;
  const double coarse = 1 + 0.002 * ((code & 63) - 24);
  return (band.low + band.slope * fine + band.bend * 4 * along * (1 - along)) * coarse;
}

double RcOscillator::measured(int code, int fine) {
  return frequency(code, fine) * (1 + noise_ * evenly(state_));
}

}  // namespace sim
