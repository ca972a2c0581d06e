// The account of where a run's time went.
#include <gtest/gtest.h>

#include <numeric>

#include "engine/time_table.h"
#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using support::EngineBench;
using support::Millis;

// The log of the wire knows when power came, when the first answer began, and how long the line was still.
TEST(TimeTable, AddsUpToTheRunAndAgreesWithTheWire) {
  EngineBench bench;
  bench.select("Ivy-HF0S");
  bench.bauds("9600", "115200");
  bench.insertChip(Millis(700));
  bench.loadCode(3);
  const platform::Instant began = bench.loop.now();
  ASSERT_TRUE(bench.program());
  ASSERT_TRUE(bench.passed()) << bench.text();
  const engine::Outcome& outcome = bench.outcome();
  std::map<std::string_view, platform::Micros> times;
  platform::Micros all{0};
  for (const auto& row : engine::timeTable(outcome)) all += times[row.name] = row.time;
  EXPECT_EQ(all, std::accumulate(outcome.spent.begin(), outcome.spent.end(), platform::Micros{0}));

  const auto& log = bench.wire.log();
  const auto answer = std::find_if(log.begin(), log.end(),
                                   [](const auto& unit) { return unit.direction == sim::Direction::deviceToHost; });
  const auto firstByte = platform::Micros(answer->start) + platform::Micros(1200);
  EXPECT_NEAR(static_cast<double>((began + times["waiting for power"] - firstByte).count()), 0, 100);
  EXPECT_GE(times["first contact"].count(), answer->end - answer->start - 1200);
  EXPECT_LE(times["first contact"].count(), answer->end - answer->start + 10000);
  const auto frames = outcome.bytesSent / 128;
  EXPECT_NEAR(static_cast<double>(times["turn-rounds"].count()), static_cast<double>(frames) * 1000, 50000);
  EXPECT_GT(times["data on the wire"], 20 * times["erase"] / 10);

  std::vector<std::string_view> reasons;
  platform::Micros told{0};
  for (const engine::Rest& rest : outcome.longRests) {
    reasons.push_back(rest.why);
    told += rest.length;
  }
  EXPECT_EQ(reasons,
            (std::vector<std::string_view>{"the chip turns to the rate under test", "the chip gets ready for options",
                                           "the chip leaves its boot firmware"}));
  EXPECT_EQ(outcome.longRests[1].stage, engine::Stage::Finish);
  EXPECT_LE(told, times["prescribed rests"]);
}

// No rest that is told goes without its reason, whatever the chip and however it fails.
TEST(TimeTable, EveryLongRestHasItsReason) {
  for (const char* model : {"Alder-H80D", "Cedar-H10R", "Ivy-HF0S", "Pine-H03", "Rowan-H20"})
    for (const char* fault : {"", "silentStage", "silentStatusRead", "passesTestNotChange"}) {
      EngineBench bench;
      bench.select(model);
      bench.bauds("2400", "115200");
      bench.loadCode(3, 600);
      auto config = sim::configFor(*catalogue::findByName(model));
      EXPECT_TRUE(*fault == 0 || sim::setChipFault(config, fault, ""));
      bench.insertChip(config);
      ASSERT_TRUE(bench.program());
      for (const engine::Rest& rest : bench.outcome().longRests) EXPECT_NE(rest.why, "") << model << fault;
    }
}

}  // namespace
}  // namespace kvr
