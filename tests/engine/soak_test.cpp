// Many sessions over random models, images, clocks, latencies and faults of the wire, at most one fault in an exchange.
// Whatever happens: never the word OK for a chip whose flash differs, never a hang, never a chip that is treated
// against its rules. A failing seed is printed; KVR_SOAK_SEED=<seed> runs it alone, KVR_SOAK_COUNT=<n> runs another
// number of sessions.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using support::EngineBench;
using support::Millis;

template <class T, std::size_t N>
const T& pick(const T (&from)[N], std::mt19937_64& random) {
  return from[random() % N];
}

sim::WireConfig randomWire(std::uint64_t seed, std::mt19937_64& random) {
  static constexpr sim::Micros kLatencies[] = {0, 0, 1000, 4000, 16000};
  static constexpr double kChances[] = {0, 0.01, 0.03, 0.1};
  sim::WireConfig config{.seed = seed, .adapterLatency = pick(kLatencies, random), .keepLog = false};
  config.random = sim::RandomFaults{.chance = pick(kChances, random)};
  return config;
}

void addRandomFault(sim::ChipConfig& chip, std::mt19937_64& random) {
  static const std::vector<sim::FaultName> kNames = sim::chipFaultNames();
  const sim::FaultName& fault = kNames[random() % kNames.size()];
  // Firmwares from letter D on always say who they are.
  if (fault.name == "shortStatus" && sim::usualLetter(*chip.row) > 'C') return;
  std::string value;
  if (fault.value == sim::FaultValue::count) value = std::to_string(random() % 12);
  if (fault.value == sim::FaultValue::block)
    value = std::to_string(random() % 4) + ":" + std::to_string(random() % 5) + (random() % 2 ? ":silent" : "");
  EXPECT_TRUE(sim::setChipFault(chip, fault.name, value)) << fault.name << "=" << value;
}

struct Outcome {
  bool passed = false;
  bool faulted = false;
  std::string wrong;
};

Outcome soakOne(std::uint64_t seed) {
  static constexpr double kClocks[] = {11059200, 22118400, 18432000, 6000000, 12000000, 24000000, 33177600, 4000000};
  static const char* const kFirstRates[] = {"1200", "2400", "4800", "9600"};
  static const char* const kTopRates[] = {"115200", "57600", "38400", "19200"};
  std::mt19937_64 random(seed);
  EngineBench bench(randomWire(seed, random));
  const auto rows = catalogue::allRows();
  bench.select(rows[random() % rows.size()].name);
  bench.bauds(pick(kFirstRates, random), pick(kTopRates, random));
  sim::ChipConfig chip = sim::configFor(*catalogue::findByName(bench.model.record.name), pick(kClocks, random), seed);
  while (random() % 3 == 0) addRandomFault(chip, random);
  chip.clockDoubled = random() % 4 == 0;
  if (random() % 4 == 0) chip.startPair = random() % 2 == 0;
  bench.insertChip(chip, Millis(random() % 3000));
  const std::int32_t whole = bench.model.record.apEnd + 1;
  bench.loadCode(
      seed, random() % 16 == 0 ? whole : std::min<std::int32_t>(whole, 1 + static_cast<std::int32_t>(random() % 6000)));
  if (catalogue::hasDataFile(bench.model.record) && random() % 2 == 0) bench.loadData(seed + 1, 512);
  (void)bench.program(Millis(900000));
  Outcome outcome{.passed = bench.passed(), .faulted = bench.wire.faultsDone() > 0};
  if (bench.hung) outcome.wrong = "hangs; ";
  if (outcome.passed) outcome.wrong += bench.flashDifference();
  if (!outcome.passed && bench.records.size() == 1 && bench.records[0].failure.empty())
    outcome.wrong += "fails without words; ";
  outcome.wrong += bench.notAtRest() + bench.chip->violationText();
  if (!outcome.wrong.empty()) outcome.wrong += "\n" + bench.model.name() + bench.text();
  return outcome;
}

TEST(Soak, NeverTheWordOkForAChipThatDiffers) {
  const char* alone = std::getenv("KVR_SOAK_SEED");
  const char* count = std::getenv("KVR_SOAK_COUNT");
  const std::uint64_t first = alone ? std::strtoull(alone, nullptr, 10) : 1;
  const std::uint64_t last = alone ? first : count ? std::strtoull(count, nullptr, 10) : 2000;
  int passed = 0, faulted = 0, passedInSpite = 0, wrong = 0;
  for (std::uint64_t seed = first; seed <= last && wrong < 5; ++seed) {
    const Outcome outcome = soakOne(seed);
    passed += outcome.passed;
    faulted += outcome.faulted;
    passedInSpite += outcome.passed && outcome.faulted;
    if (outcome.wrong.empty()) continue;
    ++wrong;
    ADD_FAILURE() << "seed " << seed << ": " << outcome.wrong;
  }
  std::cout << last - first + 1 << " sessions, " << passed << " passed, " << faulted << " met a fault of the wire, "
            << passedInSpite << " of them passed in spite of it\n";
}

}  // namespace
}  // namespace kvr
