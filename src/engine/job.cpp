#include "engine/job.h"

#include <algorithm>

namespace kvr::engine {
namespace {

constexpr int kFixedLinkFrame = 128;
constexpr std::int32_t kLowestHz = 4500000, kHighestHz = 45000000;

}  // namespace

JobImage imageOf(const images::ImageBuffer& buffer) {
  const auto bytes = buffer.bytes();
  return {.bytes = {bytes.begin(), bytes.end()},
          .rangeStart = buffer.rangeStart,
          .rangeEnd = buffer.rangeEnd,
          .heldEnd = buffer.lastHeld(),
          .blanked = buffer.blanked(),
          .loaded = buffer.loaded,
          .fill = 0,
          .sum = buffer.sum};
}

int highestBaudOf(const Job& job) {
  if (job.model.traits().oscillator == catalogue::Oscillator::External) return job.highestBaud;
  return std::min(job.highestBaud, job.baseFrequencyHz > 12000000 ? 57600 : 38400);
}

bool measuresOscillator(const Job& job) {
  return job.model.traits().measuresOscillator();
}

options::OptionBytes optionBytesOf(const Job& job) {
  return options::composeOptions(job.choices, {}).bytes;
}

int frameSizeOf(const catalogue::McuRecord& record, bool fixedLink) {
  return fixedLink ? kFixedLinkFrame : traitsOf(record).frameSize;
}

std::string refusalOf(const Job& job) {
  if (!job.imageValid) return "Please open code file.";
  if (measuresOscillator(job) && (job.wantedFrequencyHz < kLowestHz || job.wantedFrequencyHz > kHighestHz))
    return "The R/C frequency is out of range.";
  return {};
}

}  // namespace kvr::engine
