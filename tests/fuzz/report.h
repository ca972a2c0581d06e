// The end of a fuzz run that found something: the fuzzer keeps the input of a program that aborts.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kvr::support {

inline int report(const std::string& fault) {
  if (fault.empty()) return 0;
  std::fprintf(stderr, "%s\n", fault.c_str());
  std::abort();
}

}  // namespace kvr::support
