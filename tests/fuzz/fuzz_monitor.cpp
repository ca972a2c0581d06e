#include "tests/monitor/stream_check.h"

#include "tests/fuzz/report.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return kvr::support::report(kvr::monitor::faultOf({data, data + size}));
}
