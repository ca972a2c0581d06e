// One fuzzer for all targets: `--target=NAME` chooses.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/targets.h"

namespace {

const kvr::fuzz::Target* chosen = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  for (const std::string_view argument : std::vector<std::string_view>(*argv, *argv + *argc)) {
    for (const auto& target : kvr::fuzz::kTargets)
      if (argument == "--target=" + std::string(target.name)) chosen = &target;
  }
  if (chosen) return 0;
  std::fprintf(stderr, "Which target? --target=NAME, of:");
  for (const auto& target : kvr::fuzz::kTargets) std::fprintf(stderr, " %s", std::string(target.name).c_str());
  std::fprintf(stderr, "\n");
  std::exit(2);
}

// The fuzzer keeps the input of a program that aborts.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string fault = chosen->faultOf({data, data + size});
  if (fault.empty()) return 0;
  std::fprintf(stderr, "%s\n", fault.c_str());
  std::abort();
}
