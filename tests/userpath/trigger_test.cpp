// The self-defined command in front of an ordinary download.
#include <gtest/gtest.h>

#include "sim/application.h"
#include "tests/userpath/userpath_bench.h"

namespace {

using namespace kvr::userpath;

const sim::Line kUserLine{19200, 'o', 7, 2};

struct TriggerBench : UserPathBench {
  explicit TriggerBench(const char* name = "Ivy-HF0S") {
    select(name);
    options.composeOptions();
    loadCode(5, std::min(9000, model.record.apEnd + 1));
    chipWithProgram();
    page.txtUserCode.setText("12 34 56");
    setLine(page.userCodeLine(), "19200", "Odd", "7", "2");
  }
  void chipWithProgram() {
    insertChip();
    loop.runFor(Millis(200));
    chip->setApplication(std::make_unique<sim::TriggerApplication>(kUserLine, Bytes{0x12, 0x34, 0x56}));
    chip->runApplication(loop.now().count());
  }
};

TEST(Trigger, ReachesTheBootFirmwareWithoutAPowerCycle) {
  for (const char* name : {"Ivy-HF0S", "Cedar-H80D", "Elm-H10", "Fir-H20A", "Juniper-H10Y", "Quince-H07G"}) {
    SCOPED_TRACE(name);
    TriggerBench bench(name);
    ASSERT_TRUE(bench.press(bench.page.comSendUserCode, Millis(120000)));
    EXPECT_TRUE(bench.passed()) << bench.text();
    EXPECT_EQ(bench.flashDifference(), "");
    EXPECT_EQ(bench.notAtRest(), "");

    const auto& log = bench.wire.log();
    ASSERT_GT(log.size(), 2u);
    EXPECT_EQ(std::tuple(log[0].bytes, log[0].line), std::tuple(Bytes{0x12, 0x34, 0x56}, kUserLine));
    EXPECT_GE(log[1].start - log[0].end, 20 * sim::kMillisecond);
    EXPECT_LE(log[1].start - log[0].end, 60 * sim::kMillisecond);
    EXPECT_NE(log[1].line, kUserLine) << "the engine's own settings";
  }
}

TEST(Trigger, SaysWhyNothingBegins) {
  TriggerBench bench;
  std::string status;
  bench.display.onPortStatus = [&](const std::string& why) { status = why; };
  UserPathBench::setLine(bench.page.userCodeLine(), "19200", "Odd", "8", "1.5");
  ASSERT_TRUE(bench.press(bench.page.comSendUserCode));
  EXPECT_TRUE(
      bench.says("\nOpen COM port failed!\nThe COM port is opened by another Program or the COM port does not exist."));
  EXPECT_EQ(status, "/dev/ttyV0: 1.5 stop bits go with 5 data bits only");
  EXPECT_EQ(bench.dialogs.beeps.size(), 1u);

  bench.images.imageValid = false;
  ASSERT_TRUE(bench.press(bench.page.comSendUserCode));
  EXPECT_EQ(bench.dialogs.shown.back().text, "Please open code file.");
  EXPECT_TRUE(bench.wire.log().empty());
  EXPECT_EQ(bench.notAtRest(), "");
}

TEST(Trigger, StopDuringTheCommandStartsNoDownload) {
  TriggerBench bench;
  bench.page.txtUserCode.setText(std::string(600, '5'));
  UserPathBench::setLine(bench.page.userCodeLine(), "1200", "None", "8", "1");
  bench.pressAfter(Millis(500), bench.panel.comStop_Download);
  ASSERT_TRUE(bench.press(bench.page.comSendUserCode));
  EXPECT_EQ(bench.lines("Operation stopped. "), 1) << bench.text();
  EXPECT_FALSE(bench.says("trying to connect"));
  EXPECT_LE(bench.loop.now(), std::chrono::seconds(3));
  EXPECT_EQ(bench.notAtRest(), "");
}

}  // namespace
