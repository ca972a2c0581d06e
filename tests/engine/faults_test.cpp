// A good run is recorded, and then run again with each of its frames faulted in turn, with Stop at each of its waits,
// and with the adapter pulled out there.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <tuple>

#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using sim::Direction;
using sim::Fault;
using sim::FaultKind;
using support::EngineBench;
using support::Millis;

const std::vector<std::string> kModels = {"Alder-H80D", "Birch-L80A", "Cedar-H10R", "Fir-H10A",
                                          "Ivy-HF0S",   "Pine-H03",   "Sumac-H08A", "Rowan-H20"};

void setUp(EngineBench& bench, const std::string& model) {
  bench.select(model);
  bench.bauds("9600", "115200");
  bench.insertChip(Millis(50));
  bench.loadCode(3, 1500);
}

void runWell(EngineBench& bench, const std::string& model) {
  setUp(bench, model);
  EXPECT_TRUE(bench.program());
  EXPECT_TRUE(bench.passed()) << model << bench.text();
}

// `splitEverywhere`: a gap in front of each byte, not only of the first 24.
std::vector<Fault> faultsOf(const sim::Unit& unit, bool splitEverywhere) {
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
  for (int byte = 1; byte <= (splitEverywhere ? last : std::min(last, 24)); ++byte)
    add(FaultKind::split, byte, 25 * sim::kMillisecond);
  return faults;
}

std::string wrongWith(EngineBench& bench) {
  std::string wrong = bench.hung ? "hangs; " : "";
  if (bench.passed()) wrong += bench.flashDifference();
  if (!bench.passed() && bench.panel.verdict.value() != download::VerdictKind::Fail) wrong += "no verdict; ";
  return wrong + bench.notAtRest() + bench.chip->violationText();
}

TEST(WireFaults, EveryFrameOfAGoodRunFaultedInEveryWay) {
  int runs = 0, passed = 0, stoppedByHand = 0, wrongs = 0;
  for (const std::string& model : kModels) {
    std::set<std::tuple<Direction, int, std::size_t>> seen;  // one frame of each kind and size is enough
    EngineBench good;
    runWell(good, model);
    for (const sim::Unit& unit : good.wire.log()) {
      const bool first = unit.bytes.size() > 5 && seen.emplace(unit.direction, unit.bytes[5], unit.bytes.size()).second;
      for (const Fault& fault : faultsOf(unit, first)) {
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

sim::Bytes garbled(std::span<const std::uint8_t> frame, bool wide, std::mt19937_64& random) {
  const auto noise = [&](std::size_t count) { return support::randomBytes(random(), count); };
  sim::Bytes payload(frame.begin() + 6, frame.end() - (wide ? 3 : 2));
  switch (random() % 5) {
    case 0:
      return noise(1 + random() % 3000);
    case 1:
      return sim::buildReply(frame[5], noise(random() % 248), wide);
    case 2:
      payload.resize(random() % (payload.size() + 1));
      break;
    case 3:
      std::fill(payload.begin(), payload.end(), random() % 2 ? 0xFF : 0x00);
      break;
    default:
      return sim::buildReply(static_cast<std::uint8_t>(random()), payload, wide);
  }
  return sim::buildReply(frame[5], payload, wide);
}

// Whatever a chip says, in whole frames of any length too, the run comes to its end and the window stays usable.
TEST(GarbledChip, EndsEveryRunWithAUsableWindow) {
  static const char* const kRates[] = {"1200", "2400", "9600", "19200", "57600", "115200"};
  const auto rows = catalogue::allRows();
  for (std::uint64_t seed = 1; seed <= 1500; ++seed) {
    std::mt19937_64 random(seed);
    EngineBench bench(sim::WireConfig{.keepLog = false});
    const std::size_t pick = random() % 2 ? random() % rows.size() : 697 + random() % 57;  // half of them Pine, Quince
    bench.select(rows[pick].name);
    bench.bauds(kRates[random() % std::size(kRates)], kRates[random() % std::size(kRates)]);
    bench.insertChip(Millis(50), seed);
    bench.loadCode(seed, 600);
    int clean = static_cast<int>(random() % 8);
    bench.chip->say = [&, say = bench.chip->say](sim::Micros at, const sim::Line& line,
                                                 std::span<const std::uint8_t> frame) {
      if (--clean >= 0 || random() % 2) return say(at, line, frame);
      return say(at, line, garbled(frame, rows[pick].frame2, random));
    };
    (void)bench.press(random() % 8 ? bench.panel.comDownload[0] : bench.panel.comReadChipLock, Millis(300000));
    ASSERT_EQ((bench.hung ? "hangs; " : "") + bench.notAtRest(), "") << seed << bench.text();
  }
}

// Blank blocks have equal sums, so a late answer to one would do for the next, which the chip may have missed.
TEST(WireFaults, ALateAnswerIsNotTakenForThatOfALikeBlock) {
  for (int late = 1140; late < 1240; late += 2) {
    sim::WireConfig config{.keepLog = false};
    config.faults = {{Direction::deviceToHost, 9, FaultKind::delay, 0, 1, late * sim::kMillisecond}};
    EngineBench bench(config);
    setUp(bench, "Ivy-HF0S");
    bench.bauds("9600", "57600");
    bench.images.CodeBuffer.fill(0);
    EXPECT_TRUE(bench.program());
    EXPECT_EQ(wrongWith(bench), "") << late << " ms";
  }
}

// A run of each model, met at each of its moments by what `meet` plans; one that does not pass must end within `limit`
// of it and say one of the two.
void meetEveryRun(const std::function<void(EngineBench&, Millis)>& meet, Millis limit, const char* words,
                  const char* orWords) {
  for (const std::string& model : kModels) {
    EngineBench good;
    runWell(good, model);
    for (const int moment : good.moments()) {
      SCOPED_TRACE(model + " at " + std::to_string(moment) + " ms");
      EngineBench bench;
      setUp(bench, model);
      meet(bench, Millis(moment));
      platform::Instant end{};
      bench.results.writeLog = [&](const download::RunRecord&) { end = bench.loop.now(); };
      ASSERT_TRUE(bench.program(Millis(60000)));
      EXPECT_EQ(wrongWith(bench), "") << bench.text();
      EXPECT_TRUE(bench.dialogs.shown.empty());
      if (bench.passed()) continue;
      EXPECT_LT(end - Millis(moment), limit) << bench.text();
      EXPECT_TRUE(bench.says(words) || bench.says(orWords)) << bench.text();
    }
  }
}

TEST(StopButton, EndsTheRunAtEveryWaitAndLeavesAUsableWindow) {
  meetEveryRun([](EngineBench& bench, Millis at) { bench.pressAfter(at, bench.panel.comStop_Download); }, Millis(1500),
               "Operation stopped. ", "Setting options failed!");
}

TEST(LostPort, EndsTheRunWithinASecondInWordsWithoutDialogs) {
  meetEveryRun([](EngineBench& bench, Millis at) { bench.loop.after(at, [&bench] { bench.link.unplug(); }); },
               Millis(1000), "unplugged", "Connection failed");
}

}  // namespace
}  // namespace kvr
