// How long opening a project of 64 KB of code takes, dialogs aside: reading, checking, panel, images, views.
#include <chrono>

#include "benchmarks/figure.h"
#include "tests/project/project_bench.h"

int main() {
  kvr::project::ProjectBench bench;
  std::mt19937 random(1);
  bench.select("Alder-H100D");
  bench.fill(random, 65536);
  bench.save("/p.KVR");
  std::vector<double> times;
  for (int i = 0; i < 51; ++i) {
    const auto start = std::chrono::steady_clock::now();
    if (!bench.room.openProject("/p.KVR")) return 1;
    times.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  bench::figure("project.open_ms", bench::median(times), "ms");
}
