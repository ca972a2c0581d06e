// The monitor's frames among whatever else a firmware writes.
#include "tests/fuzz/targets.h"
#include "tests/monitor/stream_check.h"

namespace kvr::fuzz {

std::string faultOfMonitor(const Bytes& input) {
  return monitor::faultOf(input);
}

}  // namespace kvr::fuzz
