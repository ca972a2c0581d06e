// Chips with an internal oscillator, with the spread of real parts: what a run calls a success must leave the chip at
// the wanted frequency, and what it cannot reach it must say. Run with the chip's measuring time at its default of
// none.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "engine/status_frame.h"
#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using support::EngineBench;
using support::Millis;

struct Outcome {
  bool passed = false;
  bool outside = false;
  std::string wrong;
};

Outcome trimOne(std::uint64_t seed) {
  static const char* const kRates[] = {"1200", "2400", "4800", "9600", "14400", "19200", "38400", "57600"};
  std::mt19937_64 random(seed);
  std::vector<std::string> names;
  for (const auto& row : catalogue::allRows())
    if (traitsOf(row).measuresOscillator()) names.emplace_back(row.name);
  EngineBench bench(sim::WireConfig{.keepLog = false});
  bench.select(names[random() % names.size()]);
  const char* first = kRates[random() % std::size(kRates)];
  bench.bauds(first, random() % 4 ? "115200" : first);  // one rate for all: the line is never opened anew
  const auto& choices = options::frequencyChoices();
  bench.optionPanel.com_RC_frequency[5].setText(choices[random() % choices.size()]);
  bench.options.setControlValue(random() % 2 ? "New_ISP_f_YES" : "New_ISP_f_NO", "True");
  sim::ChipConfig chip = sim::configFor(*catalogue::findByName(bench.model.record.name), 0, seed);
  chip.rc.gap = random() % 2 ? 0.1 : 0.0;
  bench.insertChip(chip);
  bench.loadCode(seed, 100);
  (void)bench.program(Millis(120000));
  Outcome outcome{.passed = bench.passed(), .outside = bench.says("Frequency range can not be covered:")};
  const double wanted = bench.options.wantedFrequencyHz();
  const int baud = download::readJob(bench.jobPanels, false).firstBaud;
  const double step = engine::baudUnits(baud) * static_cast<double>(engine::clockFactor(baud));
  const double off = std::abs(bench.chip->applicationClockHz() - wanted);
  if (outcome.passed && off > wanted * 0.0025 + step)
    outcome.wrong = "runs at " + std::to_string(bench.chip->applicationClockHz()) + " for " + std::to_string(wanted);
  if (bench.hung || (!outcome.passed && !outcome.outside)) outcome.wrong += " ends otherwise";
  outcome.wrong += bench.notAtRest() + bench.chip->violationText();
  if (!outcome.wrong.empty())
    outcome.wrong += " (" + bench.model.name() + " from " + std::to_string(baud) + ")" + bench.text();
  return outcome;
}

TEST(Trim, LeavesTheChipAtTheWantedFrequencyOrSaysThatItCannot) {
  const char* count = std::getenv("KVR_TRIM_COUNT");
  const char* alone = std::getenv("KVR_TRIM_SEED");
  const std::uint64_t first = alone ? std::strtoull(alone, nullptr, 10) : 1;
  const std::uint64_t last = alone ? first : count ? std::strtoull(count, nullptr, 10) : 10000;
  int passed = 0, outside = 0, wrong = 0;
  for (std::uint64_t seed = first; seed <= last && wrong < 5; ++seed) {
    const Outcome outcome = trimOne(seed);
    passed += outcome.passed;
    outside += outcome.outside;
    if (outcome.wrong.empty()) continue;
    ++wrong;
    ADD_FAILURE() << "seed " << seed << ": " << outcome.wrong;
  }
  EXPECT_GE(passed, static_cast<int>(last - first + 1) * 7 / 10) << "a wrong band would leave more out of reach";
  std::cout << last - first + 1 << " chips: " << passed << " trimmed, " << outside << " out of reach\n";
}

}  // namespace
}  // namespace kvr
