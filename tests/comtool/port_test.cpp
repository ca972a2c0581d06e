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

TEST(PortArea, LightsTheMainLampOnlyForTheEnginesOwnPortAndPutsItOutAgain) {
  ToolBench b;
  b.open();
  EXPECT_TRUE(b.imgOpen_sys.on());
  b.panel.com_Debug_COM.userPick(1);
  b.open();
  EXPECT_FALSE(b.imgOpen_sys.on());
  b.open();
  EXPECT_TRUE(b.link.opened);
  EXPECT_FALSE(b.imgOpen_sys.on());
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

TEST(PortArea, AnUnpluggedAdapterClosesTheTerminalInWords) {
  ToolBench b;
  b.open();
  b.panel.comAutoSend.press();
  b.arriveAndShow("kept");
  b.link.pullOut();
  EXPECT_EQ(b.lastMessage(), "COM3: the adapter was pulled out");
  EXPECT_FALSE(b.tool.isOpen());
  EXPECT_TRUE(b.automaticSendsRest());
  EXPECT_FALSE(b.panel.imgOpen[2].on() || b.holdsPort());
  EXPECT_EQ(b.shown(), "kept");
}

TEST(PortArea, ANewBaudIsUsedAtOnceWhileOpenAndOpensNothingWhileClosed) {
  ToolBench b;
  b.panel.com_Debug_Baud.userPick(0);
  EXPECT_EQ(b.link.opens, 0);
  b.open();
  b.panel.com_Debug_Baud.userPick(11);
  EXPECT_EQ(b.link.current, "1200,N,8,1");
  EXPECT_EQ(b.link.opens, 2);
  EXPECT_TRUE(b.tool.isOpen());
  b.panel.com_Debug_StopBits.userPick(1);
  EXPECT_EQ(b.link.current, "1200,N,8,1");
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
    EXPECT_EQ(b.lastMessage(), "The baud rate must be a whole number from 50 to 4000000.") << bad;
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
  EXPECT_EQ(b.lastMessage(), "The baud rate must be a whole number from 50 to 4000000.");
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

// What a download does: it takes the port, sets its own line, speaks, and gives the port back at its end.
TEST(PortArea, ARunTakesThePortInTheMiddleOfRepeatedSendsAndGivesItBack) {
  ToolBench b;
  b.open();
  b.repeat("T", "100");
  b.loop.runFor(Millis(250));
  EXPECT_EQ(b.sentText(), "TT");
  {
    const auto running = b.activity.begin();
    b.lock.toBusy();
    EXPECT_FALSE(b.panel.comOpenCOM[0].enabled());
    b.tool.releasePort();
    EXPECT_FALSE(b.link.opened);
    b.link.setPortNumber(1);
    ASSERT_FALSE(b.link.setSettings("1200,e,8,1"));
    ASSERT_FALSE(b.link.open());
    b.loop.runFor(Millis(1000));
    b.panel.comSpreadSendCom[0].press();
    EXPECT_FALSE(b.panel.texReceive.userKey('k'));
    EXPECT_EQ(b.sentText(), "TT");
    EXPECT_EQ(b.link.current, "1200,e,8,1");
    EXPECT_FALSE(b.holdsPort());
    b.lock.toFree();
    b.tool.takePort();
  }
  EXPECT_TRUE(b.holdsPort());
  EXPECT_EQ(b.link.current, "115200,N,8,1");
  b.loop.runFor(Millis(100));
  EXPECT_EQ(b.sentText(), "TTT");
  EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:3");
}

}  // namespace
}  // namespace kvr::comtool
