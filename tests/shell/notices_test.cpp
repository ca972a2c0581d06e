// The line below the message pane.
#include <gtest/gtest.h>

#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

TEST(NoticeLine, SaysWhatLogTraceAdapterAndTerminalHaveToSayAndKeepsIt) {
  support::FormBench bench;
  auto& main = bench.form.main;
  const auto latest = [&] { return main.labNotice.caption(); };
  EXPECT_FALSE(main.comNotices.visible());
  bench.form.portLine.deviceOf = [&](int number) { return number == 1 ? "/dev/ttyUSB0" : ""; };
  bench.form.portLine.follow();
  main.combCommPort.userPick(1);
  main.combCommPort.userPick(0);
  EXPECT_EQ(latest(), "");  // what the user chooses is no news
  bench.form.portLine.deviceOf = [](int) { return ""; };
  bench.form.portLine.follow();
  EXPECT_EQ(latest(), "COM1: no device found");
  bench.form.portLine.deviceOf = [](int) { return "/dev/ttyUSB1"; };
  bench.form.portLine.follow();
  EXPECT_EQ(latest(), "COM1: /dev/ttyUSB1");
  bench.form.tool.labLog.setCaption("Log: a.txt, 1 KB");
  bench.form.tool.labPort.setCaption("Waiting for COM2 to come back");
  bench.form.tool.labPort.setCaption("");
  EXPECT_EQ(latest(), "Waiting for COM2 to come back");
  bench.select("Ivy-H20S");
  bench.loadCode(support::randomBytes(3, 2048));
  main.cheBatchLog.userSet(true);
  bench.insertChip();
  ASSERT_TRUE(bench.press(bench.form.download.comDownload[0])) << bench.pane();
  EXPECT_EQ(latest(), "A line was added to the batch log /program/KVR-ISP_batch.csv");
  bench.dialogs.paths.push_back("/trace.txt");
  bench.form.download.comSaveTrace.press();
  EXPECT_EQ(latest(), "The trace was saved as /trace.txt");
  main.comNotices.press();
  const std::string& history = bench.dialogs.shown.back().text;
  EXPECT_LT(history.find("/trace.txt"), history.find("batch log"));
  EXPECT_LT(history.find("batch log"), history.find("no device found"));
  EXPECT_EQ(history.find("a.txt"), std::string::npos);
}

TEST(NoticeLine, KeepsTwoHundredLinesAndARepeatedTextOnce) {
  Notices notices;
  for (int i = 0; i < 500; ++i) notices.add(std::to_string(i), "line " + std::to_string(i) + "\nof it");
  notices.add("500", "the same");
  notices.add("501", "the same");
  const std::string all = notices.history();
  EXPECT_TRUE(all.starts_with("501  the same\n499  line 499 of it\n")) << all.substr(0, 60);
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), static_cast<long>(Notices::kMost) - 1);
}

}  // namespace
}  // namespace kvr::shell
