// What a trace holds, when it becomes a file, and that it never stands in a run's way.
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/trace_job.h"
#include "engine/trace_text.h"
#include "tests/support/engine_bench.h"

namespace kvr {
namespace {

using engine::Trace;
using engine::TraceEvent;
using Kind = TraceEvent::Kind;
using download::VerdictKind;
using support::EngineBench;
using support::Millis;

struct TraceOfRun : ::testing::Test {
  TraceOfRun() {
    bench.select("Ivy-HF0S");
    bench.bauds("9600", "115200");
    bench.insertChip(Millis(2000));
    bench.loadCode(5, 1500);
  }
  void failErase() { bench.chip->config().faults.silentErase = true; }
  std::vector<std::string> kept() const { return bench.files.filesIn("/state/traces"); }
  EngineBench bench;
};

platform::Bytes bytesOf(const std::vector<TraceEvent>& events, Kind kind) {
  platform::Bytes all;
  for (const TraceEvent& event : events)
    for (int i = 0; event.kind == kind && i < event.times; ++i)
      all.insert(all.end(), event.bytes.begin(), event.bytes.end());
  return all;
}

TEST_F(TraceOfRun, HoldsEveryByteOfBothDirections) {
  ASSERT_TRUE(bench.program());
  ASSERT_TRUE(bench.passed()) << bench.text();
  const Trace trace = bench.tracer.trace();
  platform::Bytes out, in;
  for (const auto& unit : bench.wire.log()) {
    auto& lane = unit.direction == sim::Direction::hostToDevice ? out : in;
    lane.insert(lane.end(), unit.bytes.begin(), unit.bytes.end());
  }
  EXPECT_EQ(bytesOf(trace.events, Kind::Sent), out);
  EXPECT_EQ(bytesOf(trace.events, Kind::Received), in);
  EXPECT_LT(trace.events.size(), 400u) << "a wait of two seconds is one line, and so is an answer";
  EXPECT_TRUE(kept().empty());
}

TEST_F(TraceOfRun, ReadsItsTextAsItWasWritten) {
  bench.insertChip(Millis(4500));  // the hint has lines with blanks in front
  bench.link.devices[1] = "[/dev/tty \\n]";
  ASSERT_TRUE(bench.program());
  const Trace trace = bench.tracer.trace();
  const std::string text = engine::traceText(trace);
  EXPECT_EQ(engine::readTrace(text).error, "");
  EXPECT_EQ(engine::readTrace(text).trace, trace);
  const auto job = engine::jobOf(trace);
  ASSERT_TRUE(job);
  EXPECT_EQ(engine::jobFields(*job), engine::jobFields(download::readJob(bench.jobPanels, false)));
  for (const std::string& damaged :
       {text.substr(0, text.size() - 5), text.substr(5), text + "x", "KVR-ISP trace 2" + text.substr(15),
        std::string("KVR-ISP trace 1\nevents\n 0.0 > 46\nend\n"),
        std::string("KVR-ISP trace 1\nevents\n    0.000000  > 4G\nend\n")})
    EXPECT_EQ(engine::readTrace(damaged).error.empty(), damaged == text + "x") << damaged.substr(0, 80);
}

TEST_F(TraceOfRun, BecomesAFileWhenTheRunFailsAndOnlyThen) {
  bench.loop.after(Millis(500), [&] { bench.panel.comStop_Download.press(); });
  ASSERT_TRUE(bench.program());
  EXPECT_EQ(bench.outcome().ending, engine::Ending::Stopped);
  EXPECT_TRUE(kept().empty()) << "the user stopped it";
  for (int i = 0; i < 2; ++i) {
    bench.insertChip();
    failErase();
    ASSERT_TRUE(bench.program());
  }
  ASSERT_EQ(kept().size(), 2u);
  EXPECT_TRUE(kept()[0].starts_with("KVR-ISP_2030-01-01_12-0")) << kept()[0];
  EXPECT_TRUE(kept()[0].ends_with("_Ivy-HF0S_failed.txt")) << kept()[0];
  const auto& file = bench.files.files.at("/state/traces/" + kept()[1]).bytes;
  EXPECT_EQ(engine::readTrace({reinterpret_cast<const char*>(file.data()), file.size()}).trace, bench.tracer.trace());
  EXPECT_NE(bench.panel.comSaveTrace.toolTip().find(kept()[1]), std::string::npos);
}

TEST_F(TraceOfRun, LeavesTheNewestFiftyFilesAndWhatIsNotItsOwn) {
  for (int i = 10; i < 70; ++i)
    bench.files.put("/state/traces/KVR-ISP_2029-01-01_12-00-" + std::to_string(i) + "_X_failed.txt", "");
  bench.files.put("/state/traces/KVR-ISP_notes.doc", "");
  failErase();
  ASSERT_TRUE(bench.program());
  auto names = kept();
  std::ranges::sort(names);
  EXPECT_EQ(names.size(), 51u);
  EXPECT_EQ(names.front(), "KVR-ISP_2029-01-01_12-00-21_X_failed.txt");
}

TEST_F(TraceOfRun, ThatCannotBeWrittenLeavesTheVerdictAndSaysWhyInOneLine) {
  failErase();
  bench.files.diskFull = true;
  ASSERT_TRUE(bench.program());
  EXPECT_EQ(bench.panel.verdict.value(), VerdictKind::Fail);
  EXPECT_TRUE(bench.text().ends_with("\nThere is no trace of this run: /state/traces: disk full")) << bench.text();
  EXPECT_EQ(bench.outcome().words.find("trace"), std::string::npos);
  EXPECT_EQ(bench.notAtRest(), "");
}

TEST_F(TraceOfRun, IsSavedByItsButtonAndNotKeptWithoutItsTick) {
  EXPECT_FALSE(bench.panel.comSaveTrace.enabled()) << "nothing has run";
  ASSERT_TRUE(bench.program());
  bench.dialogs.paths = {"/home/mine.txt"};
  bench.panel.comSaveTrace.press();
  EXPECT_EQ(bench.dialogs.shown.back().kind, "save");
  EXPECT_TRUE(bench.files.fileExists("/home/mine.txt"));
  bench.files.diskFull = true;
  bench.dialogs.paths = {"/home/more.txt"};
  bench.panel.comSaveTrace.press();
  EXPECT_EQ(bench.dialogs.shown.back().text, "The trace could not be saved: disk full");
  bench.files.diskFull = false;
  bench.panel.cheTrace.setValue(false);
  bench.insertChip();
  failErase();
  ASSERT_TRUE(bench.program());
  EXPECT_EQ(bench.panel.verdict.value(), VerdictKind::Fail);
  EXPECT_TRUE(kept().empty());
  EXPECT_FALSE(bench.panel.comSaveTrace.enabled());
}

// The start and the end of a long run, and all its stages; of the rest what fits.
TEST(LineRecorder, ThinsTheOldestDataFramesOfTheMiddle) {
  platform::VirtualLoop loop;
  engine::LineRecorder recorder(loop, {.most = 200000, .kept = 20000});
  recorder.begin();
  std::uint64_t serial = 0;
  for (int i = 0; i < 5000; ++i) {
    if (i % 100 == 0) recorder.note(Kind::Stage, std::to_string(i));
    recorder.sent(support::randomBytes(++serial, 138));
    recorder.received(support::randomBytes(++serial, 8));
    loop.runFor(Millis(30));
  }
  std::size_t cost = 0, stages = 0, frames = 0, left = 0;
  for (const TraceEvent& event : recorder.events()) {
    cost += engine::LineRecorder::costOf(event);
    stages += event.kind == Kind::Stage;
    frames += event.kind == Kind::Sent;
    if (event.kind == Kind::Thinned) left += static_cast<std::size_t>(event.times);
  }
  EXPECT_LE(cost, 200000u);
  EXPECT_EQ(stages, 50u);
  const auto& events = recorder.events();
  EXPECT_EQ(events[1].bytes, support::randomBytes(1, 138));
  EXPECT_EQ(events.back().bytes, support::randomBytes(10000, 8));
  const auto received = std::ranges::count(events, Kind::Received, &TraceEvent::kind);
  EXPECT_EQ(frames + static_cast<std::size_t>(received) + left, 10000u) << "what was left out is counted";
  EXPECT_GT(frames, 100u);
}

}  // namespace
}  // namespace kvr
