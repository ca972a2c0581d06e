// How many whole downloads with measuring and trim of the internal oscillator the virtual world gets through in a
// second.
#include <chrono>

#include "benchmarks/figure.h"
#include "tests/support/engine_bench.h"

int main() {
  constexpr int kSessions = 100;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kSessions; ++i) {
    kvr::support::EngineBench bench;
    bench.select(i % 2 ? "Quince-H0F" : "Pine-H0F");
    bench.bauds("9600", "38400");
    bench.loadCode(static_cast<std::uint64_t>(i) + 1);
    bench.insertChip(kvr::platform::Millis(100), static_cast<std::uint64_t>(i) + 1);
    if (!bench.program() || !bench.flashDifference().empty()) return 1;
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  bench::figure("rc.sessions_per_s", kSessions / taken.count(), "1/s");
  return 0;
}
