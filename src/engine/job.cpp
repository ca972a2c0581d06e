#include "engine/job.h"

#include <algorithm>

#include "engine/family_rules.h"

namespace kvr::engine {
namespace {

constexpr std::int32_t kLowestHz = 4500000, kHighestHz = 45000000;

}  // namespace

int highestBaudOf(const Job& job) {
  const int family = job.record().family;
  if (family < 15 || family > 17) return job.highestBaud;
  return std::min(job.highestBaud, job.baseFrequencyHz > 12000000 ? 57600 : 38400);
}

bool measuresOscillator(const Job& job) {
  return hasTrimmedOscillator(job.record().family);
}

int frameSizeOf(const catalogue::McuRecord& record, bool fixedLink) {
  return hasTrimmedOscillator(record.family) && !fixedLink ? 64 : 128;
}

std::string refusalOf(const Job& job) {
  if (!job.imageValid) return "Please open code file.";
  if (measuresOscillator(job) && (job.wantedFrequencyHz < kLowestHz || job.wantedFrequencyHz > kHighestHz))
    return "The R/C frequency is out of range.";
  return {};
}

}  // namespace kvr::engine
