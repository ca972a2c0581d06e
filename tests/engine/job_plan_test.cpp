// What a run would do, told before it starts, against what the run then does.
#include <gtest/gtest.h>

#include "engine/job_plan.h"
#include "images/image_facts.h"
#include "tests/support/engine_bench.h"
#include "tests/support/models.h"

namespace kvr::engine {
namespace {

using support::EngineBench;

std::string shapeOf(const catalogue::McuRecord& row) {
  return std::string(traitsOf(row).name) + (row.topBlockFree ? "t" : "") + (row.noOptions ? "n" : "") +
         (hasDataFile(row) ? "d" : "") + (row.extSession ? "e" : "") + (row.parityUsed ? "p" : "") +
         (row.apUpToIsp ? "u" : "");
}

bool lies(std::int32_t at, const std::vector<AddressRange>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(), [&](const AddressRange& range) { return range.holds(at); });
}

// What the chip held before and after against what the plan said would go. Empty: as planned.
std::string eraseFault(const JobPlan& plan, const Job& job, std::span<const std::uint8_t> before,
                       std::span<const std::uint8_t> after) {
  const SendPlan sends =
      planSends(job.record(), AssumedChip().firmware, job.model.blockSize, job.frameSize, job.code, job.data);
  std::vector<AddressRange> sent;
  for (const SendRange& range : sends.ranges)
    for (const AddressRange& block : blocksOf(range.first, sends.workingEnd(range, job.model.blockSize), 512))
      sent.push_back({block.first / 512 * 512, block.last});
  const auto end = static_cast<std::int32_t>(std::min(before.size(), after.size()));
  for (std::int32_t at = 0; at < end; ++at) {
    const std::uint8_t was = before[static_cast<std::size_t>(at)], is = after[static_cast<std::size_t>(at)];
    if (lies(at, sent) || plan.erase.onDemand.holds(at)) continue;
    const bool erased = lies(at, plan.erase.always);
    if (is != (erased ? 0xFF : was)) return (erased ? "spared at " : "erased at ") + images::addressText(at);
  }
  return {};
}

TEST(JobPlan, IsWhatTheRunThenDoesInEveryFamily) {
  for (const auto* model : support::oneOfEach(shapeOf)) {
    SCOPED_TRACE(std::string(model->name));
    EngineBench bench;
    bench.select(model->name);
    bench.insertChip();
    bench.loadCode(7, std::max(512, bench.model.record.apEnd / 3));
    if (catalogue::hasDataFile(bench.model.record)) bench.loadData(8);
    const Job job = download::readJob(bench.jobPanels, false);
    const JobPlan plan = planJob(job);
    const std::vector<std::uint8_t> before(bench.chip->flash().begin(), bench.chip->flash().end());
    ASSERT_TRUE(bench.program());
    const Outcome& outcome = bench.outcome();
    ASSERT_TRUE(outcome.passed()) << outcome.words;
    EXPECT_EQ(plan.baud, outcome.baud);
    EXPECT_EQ(plan.leftOut, (LeftOut{outcome.bytesLeftOut, outcome.leftOutFrom}));
    std::int64_t sent = 0;
    for (const PlannedSend& send : plan.sends) sent += send.bytes;
    EXPECT_EQ(sent, outcome.bytesSent);
    const double seconds = std::chrono::duration<double>(outcome.sinceAnswer()).count();
    EXPECT_NEAR(plan.seconds, seconds, 0.5 + 0.2 * seconds);
    EXPECT_EQ(eraseFault(plan, job, before, bench.chip->flash()), "");
    EXPECT_TRUE(!plan.writesOptions || bench.wanted()[8] == plan.optionBytes[8]);
  }
}

std::string lineAbout(const std::vector<PlanLine>& lines, const std::string& about) {
  std::string text;
  for (const PlanLine& line : lines)
    if (line.about == about) text += (text.empty() ? "" : "|") + line.text;
  return text;
}

TEST(JobPlan, TellsInWordsWhatWillHappenAlsoByItsButton) {
  EngineBench bench;
  bench.select("Ivy-HF0S");
  bench.loadCode(7, 3000);
  ASSERT_TRUE(bench.options.setControlValue("WDT_Prescalar", "5"));
  Job job = download::readJob(bench.jobPanels, false);
  const auto lines = planLines(job, planJob(job));
  EXPECT_EQ(lineAbout(lines, "Sends code"), "0000H - 0BB7H, 3072 bytes in 6 blocks of 512");
  EXPECT_EQ(lineAbout(lines, "Erases"), "0000H - EFFFH");
  EXPECT_EQ(lineAbout(lines, "Options"), "wdt-prescaler=64, usually 256");
  EXPECT_EQ(lineAbout(lines, "Takes"),
            "about 4 s from the chip's answer on, at 115200 baud if its clock is 11.0592 MHz");
  EXPECT_TRUE(std::none_of(lines.begin(), lines.end(), [](const PlanLine& line) { return line.warns; }));
  EXPECT_EQ(durationText(59.9) + ", " + durationText(80), "1 min, 1 min 20 s");
  bench.panel.comPlan.press();
  const auto& shown = bench.dialogs.shown.at(0);
  EXPECT_EQ(shown.kind + " " + shown.title, "help What will happen");
  for (const char* words : {"Sends code: 0000H - 0BB7H, 3072 bytes", "2.9 KB of 60 KB"})
    EXPECT_NE(shown.text.find(words), std::string::npos) << shown.text;
  EXPECT_EQ(bench.records.size(), 0u);
  job.imageValid = false;
  EXPECT_EQ(lineAbout(planLines(job, planJob(job)), "Cannot start"), "Please open code file.");
}

TEST(JobPlan, WarnsOfWhatDoesNotReachTheChip) {
  EngineBench bench;
  bench.select("Ivy-HF0S");
  bench.loadCode(7, 0xF800);
  Job job = download::readJob(bench.jobPanels, false);
  job.codeNumbers = {{0xF700, 0xF703}};
  const JobPlan plan = planJob(job);
  EXPECT_FALSE(plan.numbersFit);
  EXPECT_GT(plan.leftOut.bytes, 0);
  const auto lines = planLines(job, plan);
  EXPECT_NE(lineAbout(lines, "Left out"), "");
  EXPECT_NE(lineAbout(lines, "Serial number"), "");
}

}  // namespace
}  // namespace kvr::engine
