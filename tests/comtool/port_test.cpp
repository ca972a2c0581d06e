#include <gtest/gtest.h>

#include "tests/comtool/tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(PortArea, OpensWithThePagesSettingsAndShowsItOnAllThreePages) {
  ToolBench b;
  b.panel.com_Debug_COM.userPick(2);
  b.panel.com_Debug_Baud.userPick(8);
  b.panel.com_Debug_ParityCheck.userPick(0);
  b.panel.comOpenCOM[1].press();
  EXPECT_TRUE(b.link.opened);
  EXPECT_EQ(b.link.number, 3);
  EXPECT_EQ(b.link.current, "9600,E,8,1");
  EXPECT_TRUE(b.holdsPort());
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    EXPECT_EQ(b.panel.comOpenCOM[i].caption(), "Close COM");
    EXPECT_TRUE(b.panel.imgOpen[i].on());
  }
  b.panel.comOpenCOM[2].press();
  EXPECT_FALSE(b.link.opened);
  EXPECT_FALSE(b.holdsPort());
  EXPECT_EQ(b.panel.comOpenCOM[0].caption(), "Open COM");
  EXPECT_FALSE(b.panel.imgOpen[0].on());
}

void expectQuiet(ToolBench& b) {
  EXPECT_EQ(b.panel.comOpenCOM[0].caption(), "Open COM");
  EXPECT_TRUE(b.automaticSendsRest());
  const std::size_t messages = b.dialogs.shown.size();
  b.loop.runFor(Millis(5000));
  EXPECT_EQ(b.dialogs.shown.size(), messages);
  EXPECT_TRUE(b.link.sent.empty());
  EXPECT_FALSE(b.link.opened);
}

TEST(PortArea, TellsWhyAPortCannotBeOpenedAndEndsTheAutomaticSends) {
  for (platform::PortError PlayedLink::*refusal : {&PlayedLink::openError, &PlayedLink::settingsError}) {
    ToolBench b;
    b.open();
    b.repeat("y");
    b.rounds({"x"});
    b.tool.releasePort();
    b.panel.com_Debug_StopBits.userPick(1);
    b.link.*refusal = {platform::PortError::Kind::Denied, "COM1: permission denied"};
    b.open();
    ASSERT_EQ(b.dialogs.shown.size(), 1U);
    EXPECT_EQ(b.lastMessage(), "COM1: permission denied");
    EXPECT_TRUE(b.dialogs.shown[0].warning);
    expectQuiet(b);
    b.tool.send(bytesOf("xyz"));
    EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:0");
    EXPECT_EQ(b.dialogs.shown.size(), 2U);
  }
}

TEST(PortArea, ClosingByHandEndsTheAutomaticSendsAndTheMainLampAlsoTheRun) {
  for (const bool lamp : {false, true}) {
    ToolBench b;
    int stops = 0;
    b.tool.stopRun = [&] { ++stops; };
    b.imgOpen_sys.press();  // nothing is open yet
    b.open();
    b.repeat("y");
    b.rounds({"x"});
    lamp ? b.imgOpen_sys.press() : b.panel.comOpenCOM[0].press();
    EXPECT_EQ(stops, lamp ? 1 : 0);
    expectQuiet(b);
  }
}

TEST(PortArea, ABaudTypedByHandIsUsedOnceTheTypingRestsAndABadOneIsRefusedInWords) {
  ToolBench b;
  b.open();
  for (const char* text : {"2", "25", "250", "2500", "25000", "250000"}) {
    b.panel.com_Debug_Baud.userType(text);
    b.loop.runFor(Millis(100));
  }
  EXPECT_EQ(b.link.opens, 1) << "not at every key";
  b.loop.runFor(Millis(1000));
  EXPECT_EQ(b.link.current, "250000,N,8,1");
  EXPECT_EQ(b.link.opens, 2);
  for (const char* bad : {"", "fast", "9600x", "0", "99999999", "-9600", "9.6"}) {
    b.panel.com_Debug_Baud.userType(bad);
    b.loop.runFor(Millis(1000));
    EXPECT_EQ(b.panel.com_Debug_Baud.text(), bad) << "still being typed";
    b.panel.com_Debug_Baud.userLeave();
    EXPECT_EQ(b.lastMessage(), "The baud rate must be a whole number from 1 to 20000000.") << bad;
    EXPECT_EQ(b.panel.com_Debug_Baud.text(), "250000");
    b.dialogs.shown.clear();
  }
  EXPECT_EQ(b.link.opens, 2);
  b.panel.comOpenCOM[0].press();
  b.panel.com_Debug_Baud.userType("");
  b.open();
  EXPECT_EQ(b.link.current, "250000,N,8,1") << "an empty box means the last good rate";
  b.open();
  b.panel.com_Debug_Baud.userType("slow");
  b.open();
  EXPECT_FALSE(b.link.opened);
  EXPECT_EQ(b.lastMessage(), "The baud rate must be a whole number from 1 to 20000000.");
}

TEST(PortArea, TheModemLinesFollowTheirBoxesAtTheOpenAndAfterIt) {
  ToolBench b;
  b.panel.che_DTR.userSet(false);
  EXPECT_FALSE(b.link.dtr);
  b.open();
  EXPECT_FALSE(b.link.dtr);
  EXPECT_TRUE(b.link.rts);
  b.panel.che_DTR.userSet(true);
  b.panel.che_RTS.userSet(false);
  EXPECT_TRUE(b.link.dtr);
  EXPECT_FALSE(b.link.rts);
}

}  // namespace
}  // namespace kvr::comtool
