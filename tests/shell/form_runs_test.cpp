// Runs on the whole form: what they take from the terminal and give back, what the watcher starts, and a close at any
// moment.
#include <gtest/gtest.h>

#include <set>

#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr {
namespace {

using platform::Millis;
using support::FormBench;

constexpr const char* kModel = "Ivy-H20S";

struct LoadedBench : FormBench {
  explicit LoadedBench(const std::string& model = kModel) {
    select(model);
    loadCode(support::randomBytes(3, 1500));
  }
};

TEST(FormRun, TakesThePortFromTheTerminalAndGivesItBackWhenAsked) {
  for (const bool back : {false, true}) {
    LoadedBench bench;
    auto& tool = bench.form.tool;
    tool.che_AutoOpenPort.userSet(back);
    tool.com_Debug_COM.setListIndex(0);
    tool.com_Debug_Baud.setText("4800");
    tool.comOpenCOM[0].press();
    ASSERT_TRUE(bench.form.comTool.isOpen());
    const std::string toolSettings = bench.link.settings();
    tool.comAutoSend.press();  // an automatic send is on, too
    bench.loop.runFor(Millis(300));
    bench.insertChip();
    ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
    EXPECT_TRUE(bench.passed()) << bench.pane();
    EXPECT_EQ(bench.form.comTool.isOpen(), back);
    EXPECT_EQ(bench.link.isOpen(), back);
    EXPECT_EQ(tool.comOpenCOM[0].caption(), back ? comtool::kCloseCaption : comtool::kOpenCaption);
    EXPECT_TRUE(!back || bench.link.settings() == toolSettings);
    EXPECT_EQ(bench.chip->violationText(), "");
  }
}

TEST(FormRun, TheWatcherSendsTheCommandToTheRunningProgramAndDownloads) {
  LoadedBench bench;
  bench.insertChip().setApplication(
      std::make_unique<sim::TriggerApplication>(sim::Line{38400, 'n'}, sim::Bytes{0x12, 0x34, 0xAB}));
  bench.form.userpath.txtUserCode.userType("12 34 AB");
  ASSERT_TRUE(bench.press(bench.form.download.comDownload[0]));
  ASSERT_TRUE(bench.passed()) << bench.pane();
  ASSERT_EQ(bench.chip->state(), sim::ChipState::application);
  bench.form.images.panel.cekReloadFileWhileFileChange1.userSet(true);
  bench.loop.runFor(Millis(2500));
  EXPECT_EQ(bench.chip->releases(), 1);
  const auto next = support::randomBytes(4, 1500);
  const auto changed = bench.loop.now();
  bench.files.put("/image.bin", next);
  ASSERT_TRUE(bench.loop.runUntil([&] { return bench.chip->releases() == 2; }, std::chrono::minutes(2)))
      << bench.pane();
  EXPECT_LT(bench.loop.now() - changed, std::chrono::seconds(20)) << "by the command, not by chance in a long wait";
  ASSERT_TRUE(bench.loop.runUntil([&] { return !bench.form.activity.busy(); }, std::chrono::minutes(2)));
  EXPECT_TRUE(bench.passed()) << bench.pane();
  EXPECT_TRUE(std::equal(next.begin(), next.end(), bench.chip->flash().begin()));
  bench.loop.runFor(std::chrono::seconds(10));
  EXPECT_EQ(bench.chip->releases(), 2) << "one change, one download";
  EXPECT_EQ(bench.chip->violationText(), "");
}

// From the press on: before the chip has power, around every frame, and after the last.
std::set<int> momentsOfARun(const std::string& model) {
  LoadedBench bench(model);
  const auto pressed = bench.loop.now();
  bench.insertChip();
  EXPECT_TRUE(bench.press(bench.form.download.comDownload[0]));
  EXPECT_TRUE(bench.passed()) << bench.pane();
  auto moments = bench.moments(pressed.count());
  moments.insert({0, 1});
  return moments;
}

// Closes the window at that moment of a run, and once more 90 ms later when asked to. True: the run was cut short.
bool closesAt(const std::string& model, int moment, int presses) {
  LoadedBench bench(model);
  bench.insertChip();
  int unloads = 0;
  bench.form.onUnload = [&] {
    ++unloads;
    EXPECT_FALSE(bench.form.activity.busy()) << "the run needs what goes now";
    EXPECT_FALSE(bench.link.isOpen());
  };
  const auto closed = bench.loop.now() + Millis(moment);
  for (int i = 0; i < presses; ++i)
    bench.loop.after(Millis(moment + 90 * i), [&] {
      if (!bench.form.queryUnload()) bench.form.unload();
    });
  bool done = false;
  bench.loop.post([&] {
    bench.form.download.comDownload[0].press();
    done = true;
  });
  EXPECT_TRUE(bench.loop.runUntil([&] { return done && unloads > 0; }, std::chrono::minutes(2))) << bench.pane();
  EXPECT_LT((bench.loop.now() - closed).count(), 3000000);
  const int opens = bench.link.opens;
  bench.loop.runFor(std::chrono::seconds(5));
  EXPECT_EQ(unloads, 1);
  EXPECT_EQ(bench.link.opens, opens);
  EXPECT_FALSE(bench.link.isOpen());
  EXPECT_EQ(bench.chip->violationText(), "");
  return !bench.passed();
}

TEST(FormRun, AClosePressedAtAnyOfItsWaitsEndsItFirstAndThenTheWindowOnce) {
  for (const char* model :
       {"Alder-H80D", "Birch-L80A", "Cedar-H20R", "Fir-H10A", kModel, "Pine-H0B", "Sumac-H08A", "Rowan-H20"}) {
    const auto moments = momentsOfARun(model);
    EXPECT_GT(moments.size(), 60U) << model;
    int cutShort = 0;
    for (const int presses : {1, 2})
      for (const int moment : moments) {
        SCOPED_TRACE(std::string(model) + ", " + std::to_string(presses) + " at " + std::to_string(moment) + " ms");
        cutShort += closesAt(model, moment, presses);
        if (HasFailure()) return;
      }
    EXPECT_GT(cutShort, 60) << model;
  }
}

TEST(FormRun, ACloseIsNotForgottenByARunThatStillWaitsForItsFile) {
  LoadedBench bench;
  bench.form.images.panel.cekReloadFile.setValue(true);
  bench.files.put("/image.bin", platform::Bytes(700, 0x34));  // rewritten: the run waits until it is at rest
  bool gone = false;
  bench.form.onUnload = [&] { gone = true; };
  bench.loop.after(Millis(100), [&] { EXPECT_TRUE(bench.form.queryUnload()); });
  bench.loop.post([&] { bench.form.download.comDownload[0].press(); });
  bench.loop.runFor(std::chrono::seconds(20));
  EXPECT_TRUE(gone && !bench.form.activity.busy());
}

}  // namespace
}  // namespace kvr
