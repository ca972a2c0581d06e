// The terminal and the monitor of the whole program, with a talking firmware at the other end of the line.
#include <gtest/gtest.h>

#include "sim/application.h"
#include "sim/monitor_firmware.h"
#include "tests/support/form_bench.h"

namespace kvr::comtool {
namespace {

using platform::Millis;

struct TalkingBench : support::FormBench {
  // The chip has left its boot firmware: only the user's program runs.
  template <class Program, class... Arguments>
  Program& run(const sim::Line& line, const Arguments&... arguments) {
    select("Cedar-H20R");
    insertChip();
    loop.runFor(Millis(200));
    auto program = std::make_unique<Program>(line, arguments...);
    Program& running = *program;
    chip->setApplication(std::move(program));
    form.tool.com_Debug_Baud.setText(std::to_string(line.baud));
    form.tool.comOpenCOM[0].press();
    chip->runApplication(loop.now().count());
    return running;
  }
};

TEST(TalkingFirmware, ChatterAtFullLineRateAppearsWholeAndInOrder) {
  TalkingBench b;
  b.run<sim::ChatterApplication>({256000, 'n'});
  b.loop.runFor(Millis(5000));
  const std::string shown = b.form.tool.texReceive.text();
  ASSERT_GT(shown.size(), 120000U);
  std::string expected;
  for (std::uint64_t n = 0; expected.size() < shown.size(); ++n) expected += sim::ChatterApplication::lineText(n);
  EXPECT_EQ(shown, expected.substr(0, shown.size()));
  EXPECT_EQ(b.form.tool.labReceiveCount.caption(), "Receive counter:" + std::to_string(shown.size()));
}

TEST(TalkingFirmware, BadRecordsAreAskedForAgainAndAllFourListsFill) {
  using sim::BadFrame;
  TalkingBench b;
  const auto& dumps = b.run<sim::MonitorApplication>(
      {115200, 'n'}, sim::MonitorConfig{.faults = {BadFrame::badSum, BadFrame::cutShort, BadFrame::none,
                                                   BadFrame::tooLong, BadFrame::none, BadFrame::unknownType}});
  b.loop.runFor(Millis(60000));
  EXPECT_GE(dumps.resends(), 3);
  EXPECT_GT(dumps.accepted(), 50);
  EXPECT_EQ(dumps.strangeAnswers(), 0);
  for (const auto* list : {&b.form.monitor.lst_debug2, &b.form.monitor.lst_debug4})
    EXPECT_NE(list->rows().back().substr(26, 2), "  ");
  EXPECT_EQ(b.form.monitor.lst_debug4.rows()[0].substr(0, 4), "0200");
  EXPECT_GT(b.form.monitor.lst_debug1.rows()[0].size(), 17U);
  b.form.monitor.comDebugContinue[1].press();
  b.loop.runFor(Millis(100));
  EXPECT_EQ(dumps.continues(), 1);
  EXPECT_EQ(b.form.tool.labSendCount.caption(), "Send counter:4") << "answers are not counted";
}

TEST(TalkingFirmware, IsAskedForNothingAfterThePortWasOpenedAnewInTheMiddleOfItsFrame) {
  for (const bool newBaud : {false, true}) {
    TalkingBench b;
    const auto& dumps =
        b.run<sim::MonitorApplication>({115200, 'n'}, sim::MonitorConfig{.faults = {sim::BadFrame::cutShort}});
    b.loop.runFor(Millis(500));
    ASSERT_EQ(dumps.sent(), 1);
    if (newBaud) {
      b.form.tool.com_Debug_Baud.userPick(2);
    } else {
      b.form.tool.comOpenCOM[0].press();
      b.form.tool.comOpenCOM[0].press();
    }
    ASSERT_TRUE(b.form.comTool.isOpen());
    b.loop.runFor(Millis(4000));
    EXPECT_EQ(dumps.resends(), 0);
  }
}

}  // namespace
}  // namespace kvr::comtool
