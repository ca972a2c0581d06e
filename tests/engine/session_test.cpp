// Whole runs as an operator starts them, and how they end.
#include <gtest/gtest.h>

#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using download::VerdictKind;
using support::EngineBench;
using support::Millis;

void expectGood(EngineBench& bench) {
  EXPECT_TRUE(bench.passed()) << bench.text();
  EXPECT_EQ(bench.flashDifference(), "");
  EXPECT_EQ(bench.chip->violationText(), "");
  EXPECT_EQ(bench.notAtRest(), "");
}

// PASS is shown when the success is counted and not before; every other end shows FAIL.
std::vector<VerdictKind> verdictsOf(EngineBench& bench) {
  std::vector<VerdictKind> seen;
  const auto token = bench.panel.verdict.changed.watch([&] { seen.push_back(bench.panel.verdict.value()); });
  (void)bench.program();
  return seen;
}

void setUp(EngineBench& bench, const char* model = "Ivy-HF0S", std::int32_t size = 1500) {
  bench.select(model);
  bench.bauds("9600", "115200");
  bench.insertChip();
  bench.loadCode(5, size);
}

struct OneRun : ::testing::Test {
  OneRun() { setUp(bench); }
  EngineBench bench;
};

void expectFailure(EngineBench& bench, const char* words, std::size_t beeps) {
  EXPECT_EQ(bench.panel.verdict.value(), VerdictKind::Fail);
  EXPECT_TRUE(bench.says(words)) << bench.text();
  EXPECT_EQ(bench.notAtRest(), "");
  bench.loop.runFor(Millis(2000));
  EXPECT_EQ(bench.dialogs.beeps.size(), beeps);
  EXPECT_EQ(bench.panel.txtWrite_OK_Count.text(), "0");
}

TEST(Session, ShowsItsVerdictAtTheRightMomentsOnly) {
  EngineBench good;
  setUp(good);
  good.panel.txtWrite_OK_Count.changed.connect([&] { EXPECT_NE(good.panel.verdict.value(), VerdictKind::Pass); });
  EXPECT_EQ(verdictsOf(good), (std::vector{VerdictKind::Waiting, VerdictKind::Working, VerdictKind::Pass}));
  EXPECT_EQ(good.dialogs.beeps.size(), 1u);
  EXPECT_EQ(good.panel.txtWrite_OK_Count.text(), " 1");
  EXPECT_EQ(good.store.values().at({"Settings", "Write_OK_Count"}), "1");
  EngineBench bad;
  setUp(bad);
  bad.chip->config().faults.silentErase = true;
  EXPECT_EQ(verdictsOf(bad), (std::vector{VerdictKind::Waiting, VerdictKind::Working, VerdictKind::Fail}));
}

TEST_F(OneRun, HintsAfterFourSecondsOnceAndStillCatchesTheChipAnHourLater) {
  bench.insertChip(Millis(3600000));
  bench.loop.after(Millis(3990), [&] { EXPECT_FALSE(bench.says("Connection is failed.")); });
  bench.loop.after(Millis(4010), [&] { EXPECT_TRUE(bench.says("please supply target MCU power...")); });
  ASSERT_TRUE(bench.program(Millis(4000000)));
  expectGood(bench);
  EXPECT_EQ(bench.dialogs.beeps.size(), 3u) << "two with the hint, one for the success";
}

TEST(Session, RefusesAWrongModelAndForgetsTheImage) {
  for (const char* model : {"Ivy-HF0S", "Fir-H10A"}) {  // Fir goes by the name of the chip's row, and this one has none
    SCOPED_TRACE(model);
    EngineBench other;
    setUp(other, model);
    other.chip->config().faults.wrongModelCode = true;
    ASSERT_TRUE(other.program());
    expectFailure(other, "MCU Type is incorrect. please select correct MCU type and open the file again.", 3);
    EXPECT_FALSE(other.images.imageValid);
    EXPECT_EQ(other.chip->erases(), 0);
  }
}

// A frame that failed its sum long before must not bring back the short limit.
TEST_F(OneRun, NeverCutsAFrameInTwo) {
  engine::TargetLink line(bench.runs.services, bench.display, 1, engine::SumForm::TwoBytes);
  ASSERT_FALSE(line.setBaud(1200));
  ASSERT_FALSE(line.open());
  const auto frame = sim::buildReply(0x50, support::randomBytes(1, 20), true);
  auto damaged = frame;
  damaged[10] ^= 1;
  for (const auto& before : {frame, damaged}) {
    bench.chip->say(bench.loop.now().count(), {1200, 'n'}, before);
    bench.loop.runFor(Millis(1000));
    line.clearReceiveState();
    bench.chip->say(bench.loop.now().count(), {1200, 'n'}, frame);
    EXPECT_TRUE(line.awaitFrame(Millis(50)));
  }
}

TEST(Session, TriesABlockFourTimes) {
  for (const int failures : {1, 3, 4}) {
    EngineBench bench;
    setUp(bench);
    sim::ChipConfig config = sim::configFor(*catalogue::findByName("Ivy-HF0S"));
    config.faults.failsBlocks = {{1, failures, false}};
    bench.insertChip(config);
    ASSERT_TRUE(bench.program());
    if (failures < 4) {
      expectGood(bench);
    } else {
      expectFailure(bench, "Try to use the lower baud. ", 3);
      EXPECT_TRUE(bench.says("Programing failed. (End: 12:00:")) << bench.text();
    }
  }
}

TEST(Session, TakesSilenceForSuccessBehindTheFinishFrameOnly) {
  EngineBench silent;
  setUp(silent);
  silent.chip->config().faults.dropsFinishReply = true;
  ASSERT_TRUE(silent.program());
  expectGood(silent);
  EngineBench wrong;
  setUp(wrong);
  wrong.chip->config().faults.wrongFinishReply = true;
  ASSERT_TRUE(wrong.program());
  expectFailure(wrong, "The code has already programed, but the Options haven't been modified.", 2);
  for (const auto fault :
       {&sim::ChipFaults::silentErase, &sim::ChipFaults::silentStage, &sim::ChipFaults::silentOptions,
        &sim::ChipFaults::passesTestNotChange, &sim::ChipFaults::optionsDoNotStick}) {
    EngineBench bench;
    setUp(bench);
    bench.options.setControlValue("Power_On_Run_WDT_YES", "True");
    bench.chip->config().faults.*fault = true;
    ASSERT_TRUE(bench.program());
    EXPECT_EQ(bench.panel.verdict.value(), VerdictKind::Fail) << bench.text();
    EXPECT_FALSE(bench.outcome().words.empty());
    EXPECT_EQ(bench.notAtRest(), "");
  }
}

TEST(Session, GoesDownToTheThirdCandidateAndNoFurther) {
  for (const int refused : {3, 6, 9}) {
    EngineBench bench;
    setUp(bench);
    bench.chip->config().faults.refusesBaudTests = refused;
    ASSERT_TRUE(bench.program());
    EXPECT_EQ(bench.passed(), refused < 9) << bench.text();
    EXPECT_EQ(bench.says("Current Baud is: 38400 bps."), refused == 6) << bench.text();
  }
}

TEST_F(OneRun, StartsNothingWhileSomethingRuns) {
  bench.loop.after(Millis(600), [&] {
    bench.downloads.program();
    bench.downloads.checkChip();
    EXPECT_FALSE(bench.panel.comDownload[0].enabled());
    EXPECT_TRUE(bench.panel.comStop_Download.enabled());
  });
  ASSERT_TRUE(bench.program());
  expectGood(bench);
  EXPECT_EQ(bench.records.size(), 1u);
  EXPECT_EQ(bench.chip->erases(), 1);
}

}  // namespace
}  // namespace kvr
