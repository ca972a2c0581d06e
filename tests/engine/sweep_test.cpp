// Every model, from the press of the button to the line "OK", with random images over a chip that is full of other
// bytes.
#include <gtest/gtest.h>

#include "tests/support/engine_bench.h"
#include "tests/support/models.h"

namespace kvr {
namespace {

using support::EngineBench;

constexpr double kClocks[] = {11059200, 22118400, 18432000, 6000000, 12000000, 24000000, 33177600};
const char* const kFirstRates[] = {"2400", "1200", "9600", "4800"};

std::string programOne(const std::string& name, std::uint64_t seed) {
  EngineBench bench;
  bench.select(name);
  bench.bauds(kFirstRates[seed % std::size(kFirstRates)], "115200");
  bench.insertChip(support::Millis(100), seed, kClocks[seed % std::size(kClocks)]);
  bench.loadCode(seed);
  if (catalogue::hasDataFile(bench.model.record)) bench.loadData(seed + 1);
  std::string faults;
  if (!bench.program()) faults += "hangs; ";
  if (!bench.passed()) faults += "failed: " + (bench.records.empty() ? "" : bench.outcome().words) + "; ";
  if (bench.passed() && !(bench.says("Program OK") && bench.says("Encrypt OK."))) faults += "no words of success; ";
  const bool leavesDataOut = bench.model.record.family == catalogue::Family::Rowan && bench.images.EepromBuffer.loaded;
  if (bench.passedInPart() != leavesDataOut)
    faults += bench.passedInPart() ? "part left out; " : "left out in silence; ";
  faults += bench.flashDifference() + bench.notAtRest() + bench.chip->violationText();
  return faults;
}

TEST(Sweep, EveryModelIsProgrammedByteForByte) {
  const auto models = support::everyModel();
  EXPECT_EQ(models.size(), 780u);
  std::uint64_t seed = 1;
  int failed = 0;
  for (const auto* model : models) {
    const std::string faults = programOne(std::string(model->name), seed++);
    if (faults.empty()) continue;
    ADD_FAILURE() << model->name << " (seed " << seed - 1 << "): " << faults;
    if (++failed > 100) break;
  }
}

}  // namespace
}  // namespace kvr
