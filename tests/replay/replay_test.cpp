// A run that was traced ends in the same words when it is played again from its trace alone, and a trace that does not
// fit tells where it parts.
#include "replay/replay.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "engine/run_tracer.h"
#include "engine/trace_text.h"
#include "engine/tracing_view.h"
#include "offline/board_run.h"
#include "sim/demo_firmware.h"
#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"
#include "userpath/trigger_run.h"

namespace kvr {
namespace {

using engine::Trace;
using engine::TraceEvent;
using engine::TraceField;
using Kind = TraceEvent::Kind;
using Random = std::mt19937_64;
using support::FormBench;
using support::Millis;

template <class T, std::size_t N>
T pick(const T (&from)[N], Random& random) {
  return from[random() % N];
}

// As from a file: nothing else of the run is left.
Trace readAgain(const Trace& trace) {
  const auto read = engine::readTrace(engine::traceText(trace));
  EXPECT_EQ(read.error, "");
  return read.trace;
}

sim::WireConfig wireOf(Random& random) {
  constexpr sim::Micros kLatencies[] = {0, 0, 1000, 4000, 16000};
  constexpr double kChances[] = {0, 0.01, 0.03, 0.1};
  sim::WireConfig wire{.seed = random(), .adapterLatency = pick(kLatencies, random)};
  wire.random = sim::RandomFaults{.chance = pick(kChances, random)};
  return wire;
}

void addFault(sim::ChipConfig& chip, Random& random) {
  constexpr const char* kFaults[] = {
      "dropsFinishReply",  "wrongFinishReply", "silentErase",  "wrongEraseReply",    "wrongStageReply",   "silentStage",
      "silentOptions",     "silentStatusRead", "oldFirmware",  "wrongModelCode",     "optionsDoNotStick", "idReadFails",
      "wrongMeasureReply", "cutMeasureReply",  "silentRcBaud", "passesTestNotChange"};
  constexpr const char* kCounted[] = {"refusesBaudTests", "diesAfterBlocks", "answersOptionsWith81"};
  if (random() % 2)
    EXPECT_TRUE(sim::setChipFault(chip, pick(kFaults, random), ""));
  else
    EXPECT_TRUE(sim::setChipFault(chip, pick(kCounted, random), std::to_string(random() % 12)));
}

void chooseOptions(FormBench& bench, Random& random) {
  for (int row = 0; row < 14; ++row)
    for (int i = 0;; ++i) {
      auto* one = bench.form.registry.findAs<platform::OptionButton>("Option" + std::to_string(row), i);
      if (!one) break;
      if (one->enabled() && one->visible() && random() % 3 == 0) one->userChoose();
    }
}

// One run of a model at random, good or faulty, whole or stopped by its user or by a port that goes away.
Trace randomRun(std::uint64_t seed) {
  Random random(seed);
  constexpr const char* kRates[] = {"1200", "2400", "4800", "9600", "38400", "115200"};
  FormBench bench(wireOf(random));
  const auto rows = catalogue::allRows();
  bench.select(std::string(rows[random() % rows.size()].name));
  bench.form.download.cobBaudMin.setText(pick(kRates, random));
  bench.form.download.cobBaudMax.setText(pick(kRates, random));
  bench.loadCode(support::randomBytes(random(), 1 + random() % 9000));
  if (random() % 2) bench.loadData(support::randomBytes(random(), 1 + random() % 700));
  if (random() % 2) chooseOptions(bench, random);
  sim::ChipConfig chip = sim::configFor(*catalogue::findByName(bench.form.model.record.name), 11059200, random());
  if (random() % 2) addFault(chip, random);
  bench.insertChip(chip, Millis(random() % 6000));
  auto& panel = bench.form.download;
  bench.loop.after(Millis(150000), [&] { panel.comStop_Download.press(); });
  if (random() % 8 == 0)
    bench.loop.after(Millis(random() % 9000),
                     [&] { random() % 2 ? panel.comStop_Download.press() : bench.link.unplug(); });
  bench.press(random() % 8 == 0 ? panel.Command2 : random() % 8 == 0 ? panel.comReadChipLock : panel.comDownload[0]);
  return readAgain(bench.form.tracer.trace());
}

TEST(Replay, EndsFiveHundredRandomRunsInTheirOwnWords) {
  std::map<std::string, int> endings;
  for (std::uint64_t seed = 1; seed <= 500; ++seed) {
    const Trace trace = randomRun(seed);
    const replay::Replay again = replay::replay(trace);
    EXPECT_EQ(again.difference, "") << "seed " << seed << ", " << trace.field("model") << "\n";
    ++endings[trace.field("ending")];
  }
  for (const char* ending : {"passed", "failed", "stopped"}) EXPECT_GT(endings[ending], 20) << ending;
}

// A world of its own for runs that are no chip's, with their traces.
struct TracedWorld : support::VirtualWorld {
  Trace trace(engine::RunKind kind, const engine::Job& job, const engine::TraceFields& more,
              const replay::Conduct& run) {
    tracer.begin(kind, job, more);
    tracer.end(run({loop, clock, lease, stop}, view));
    return readAgain(tracer.trace());
  }
  engine::RunTracer tracer{loop, clock, link};
  engine::PortLease lease{loop, tracer.link()};
  engine::RunStop stop;
  engine::SilentView silent;
  engine::TracingView view{silent, tracer.recorder()};
};

TEST(Replay, EndsTheRunOfATriggerAndOfABoardInItsOwnWords) {
  const auto& row = *catalogue::findByName("Ivy-HF0S");
  engine::Job job{.model = catalogue::describeModel(row), .imageValid = true};
  job.choices = options::defaultValues(row.family);
  job.code = {.bytes = support::randomBytes(3, 4000), .rangeEnd = 3999, .heldEnd = 3999, .loaded = true};
  TracedWorld chip;
  const userpath::UserCommand command{"9600,n,8,1", "11 22 33"};
  const Trace trigger =
      chip.trace(engine::RunKind::Trigger, job, {{"line", command.settings}, {"command", command.bytes}},
                 [&](auto& services, auto& view) { return userpath::sendTrigger(job, command, services, view); });
  EXPECT_EQ(trigger.field("ending"), "passed");
  EXPECT_EQ(replay::replay(trigger).difference, "");
  for (const int dies : {0, 5}) {
    sim::BoardConfig config;
    if (dies > 0) config.diesAfterPages = dies;
    TracedWorld world;
    world.connectBoard(config, Millis(500));
    offline::BoardJob board{.job = job, .inputs = {.record = &job.model.record, .device = job.model.name()}};
    board.inputs.sorter = {true, false, false};
    board.inputs.options = engine::optionBytesOf(job);
    const replay::Conduct write = [&](auto& services, auto& view) {
      offline::BoardImage image;
      offline::BoardFacts facts;
      return offline::BoardRun(board, services, view, image, facts).write();
    };
    const Trace trace = world.trace(engine::RunKind::Board, job, traceFieldsOf(board), write);
    EXPECT_EQ(trace.field("ending"), dies > 0 ? "failed" : "passed") << trace.field("words");
    EXPECT_EQ(replay::replay(trace, write).difference, "");
  }
}

// Traces that users have sent: each stays a test of what was mended after it.
TEST(Replay, EndsEveryExampleInItsOwnWords) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KVR_SOURCE_DIR "/tests/replay/traces")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto read = engine::readTrace(text);
    ASSERT_EQ(read.error, "") << entry.path();
    EXPECT_EQ(replay::replay(read.trace).difference, "") << entry.path();
    ++files;
  }
  EXPECT_GE(files, 3);
}

TEST(Replay, TellsTheFirstDifference) {
  Trace trace;
  for (std::uint64_t seed = 1; trace.field("ending") != "passed" || trace.field("run") != "chip"; ++seed)
    trace = randomRun(seed);
  Trace other = trace;
  for (TraceEvent& event : other.events)
    if (event.kind == Kind::Sent && event.bytes.size() > 60) event.bytes[20] ^= 1;  // a frame of another run
  EXPECT_TRUE(replay::replay(other).difference.starts_with("at ")) << replay::replay(other).difference;
  Trace shorter = trace;
  shorter.events.resize(trace.events.size() / 2);
  EXPECT_NE(replay::replay(shorter).difference.find("the trace has nothing more"), std::string::npos)
      << replay::replay(shorter).difference;
  Trace words = trace;
  for (TraceField& field : words.head)
    if (field.key == "ending") field.value = "failed";
  EXPECT_EQ(replay::replay(words).difference, "it ends with the ending \"passed\"; the trace has \"failed\"");
}

}  // namespace
}  // namespace kvr
