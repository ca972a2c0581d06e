// A good run is recorded, and then run again with each of its frames faulted in turn, with Stop at each of its waits,
// and with the adapter pulled out there.
#include <gtest/gtest.h>

#include <set>

#include "../support/engine_bench.h"

namespace kvr {
namespace {

using sim::Direction;
using sim::Fault;
using sim::FaultKind;
using support::EngineBench;
using support::Millis;

const char* const kModels[] = {"Birch-L80A", "Cedar-H10R", "Fir-H10A", "Ivy-HF0S",
                               "Pine-H03",   "Sumac-H04",  "Rowan-H04"};

std::string modelOr(const char* name, int family) {
  if (catalogue::findByName(name)) return name;
  for (const auto& row : catalogue::allRows())
    if (row.family == family) return std::string(row.name);
  return {};
}

std::vector<std::string> models() {
  std::vector<std::string> names;
  int i = 0;
  for (const int family : {1, 2, 4, 7, 15, 17, 18}) names.push_back(modelOr(kModels[i++], family));
  return names;
}

void setUp(EngineBench& bench, const std::string& model) {
  bench.select(model);
  bench.bauds("9600", "115200");
  bench.insertChip(Millis(50));
  bench.loadCode(3, 1500);
}

std::vector<sim::Unit> recordGoodRun(const std::string& model) {
  EngineBench bench;
  setUp(bench, model);
  EXPECT_TRUE(bench.program());
  EXPECT_TRUE(bench.passed()) << model << bench.text();
  return bench.wire.log();
}

std::vector<Fault> faultsOf(const sim::Unit& unit) {
  if (unit.bytes.size() < 3) return {};
  const int last = static_cast<int>(unit.bytes.size()) - 1;
  const Fault base{.direction = unit.direction, .unit = unit.index};
  std::vector<Fault> faults;
  const auto add = [&](FaultKind kind, int byte, sim::Micros micros) {
    Fault fault = base;
    fault.kind = kind;
    fault.byte = byte;
    fault.micros = micros;
    fault.mask = 0x20;
    faults.push_back(fault);
  };
  add(FaultKind::lose, 0, 0);
  add(FaultKind::twice, 0, 0);
  add(FaultKind::noiseBefore, 7, 0);
  for (const sim::Micros late : {30 * sim::kMillisecond, 700 * sim::kMillisecond, 3 * sim::kSecond})
    add(FaultKind::delay, 0, late);
  for (const int byte : {0, 1, 2, 4, 5, last / 2, last - 1, last}) {
    add(FaultKind::flip, byte, 0);
    add(FaultKind::dropByte, byte, 0);
  }
  for (int byte = 1; byte <= std::min(last, 24); ++byte) add(FaultKind::split, byte, 25 * sim::kMillisecond);
  return faults;
}

std::string wrongWith(EngineBench& bench) {
  std::string wrong = bench.hung ? "hangs; " : "";
  if (bench.passed()) wrong += bench.flashDifference();
  if (!bench.passed() && bench.panel.verdict.value() != engine::VerdictKind::Fail) wrong += "no verdict; ";
  return wrong + bench.notAtRest() + bench.chip->violationText();
}

TEST(WireFaults, EveryFrameOfAGoodRunFaultedInEveryWay) {
  int runs = 0, passed = 0, stoppedByHand = 0, wrongs = 0;
  for (const std::string& model : models()) {
    for (const sim::Unit& unit : recordGoodRun(model)) {
      for (const Fault& fault : faultsOf(unit)) {
        sim::WireConfig config{.keepLog = false};
        config.faults = {fault};
        EngineBench bench(config);
        setUp(bench, model);
        stoppedByHand += !bench.program(Millis(60000));
        ++runs;
        passed += bench.passed();
        const std::string wrong = wrongWith(bench);
        if (wrong.empty() || ++wrongs > 5) continue;
        ADD_FAILURE() << model << ", " << sim::describe(fault) << ": " << wrong << bench.text();
      }
    }
  }
  EXPECT_LE(wrongs, 0);
  EXPECT_GT(passed, runs / 2);
  std::cout << runs << " runs with one fault each: " << passed << " passed, " << runs - passed << " failed in words ("
            << stoppedByHand << " waited on and were stopped)\n";
}

// The moments at which a run waits: around every frame and between them.
std::set<int> momentsOf(const std::string& model) {
  std::set<int> moments;
  for (const sim::Unit& unit : recordGoodRun(model))
    if (unit.bytes.size() > 2)
      for (const sim::Micros at : {unit.start - 2000, unit.start + 1000, unit.end + 1000, unit.end + 12000})
        moments.insert(static_cast<int>(std::max<sim::Micros>(at, 0) / 1000));
  return moments;
}

TEST(StopButton, EndsTheRunAtEveryWaitAndLeavesAUsableWindow) {
  for (const std::string& model : models()) {
    for (const int moment : momentsOf(model)) {
      EngineBench bench;
      setUp(bench, model);
      bench.pressAfter(Millis(moment), bench.panel.comStop_Download);
      platform::Instant end{};
      bench.hooks.onRunEnd = [&](const engine::RunRecord&) { end = bench.loop.now(); };
      ASSERT_TRUE(bench.program(Millis(60000))) << model << " at " << moment << " ms";
      EXPECT_EQ(wrongWith(bench), "") << model << " at " << moment << " ms" << bench.text();
      if (bench.passed()) continue;
      EXPECT_LT((end - Millis(moment)).count(), 1500000) << model << " at " << moment << " ms";
      EXPECT_TRUE(bench.says("Operation stopped. ") || bench.says("Setting options failed!"))
          << model << " at " << moment << " ms" << bench.text();
    }
  }
}

TEST(LostPort, EndsTheRunWithinASecondInWordsWithoutDialogs) {
  for (const std::string& model : models()) {
    for (const int moment : momentsOf(model)) {
      EngineBench bench;
      setUp(bench, model);
      bench.loop.after(Millis(moment), [&] { bench.link.unplug(); });
      platform::Instant end{};
      bench.hooks.onRunEnd = [&](const engine::RunRecord&) { end = bench.loop.now(); };
      ASSERT_TRUE(bench.program(Millis(60000))) << model << " at " << moment << " ms";
      EXPECT_EQ(wrongWith(bench), "") << model << " at " << moment << " ms" << bench.text();
      EXPECT_TRUE(bench.dialogs.shown.empty());
      if (bench.passed()) continue;
      EXPECT_LT((end - Millis(moment)).count(), 1000000) << model << " at " << moment << " ms" << bench.text();
      EXPECT_TRUE(bench.says("unplugged") || bench.says("Connection failed"))
          << model << " at " << moment << bench.text();
    }
  }
}

}  // namespace
}  // namespace kvr
