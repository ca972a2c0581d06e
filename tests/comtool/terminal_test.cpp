// What makes a terminal of the page: log, paste, lines, an adapter that comes back.
#include <gtest/gtest.h>

#include "tests/comtool/tool_bench.h"

namespace kvr::comtool {
namespace {

constexpr const char* kLog = "/l/t-2030-01-01-120000.log";

std::string fileText(ToolBench& b, const std::string& path) {
  const auto bytes = b.files.read(path);
  return bytes ? std::string(bytes->begin(), bytes->end()) : "no file";
}

void startLog(ToolBench& b, int form) {
  b.panel.txtLogFile.setText("/l/t.log");
  b.panel.comb_LogForm.setListIndex(form);
  b.panel.che_Log.userSet(true);
}

TEST(Log, HoldsTheBytesAsTheyCameWithinASecondWhateverHappensToThePane) {
  ToolBench b;
  startLog(b, 0);
  b.open();
  b.panel.comb_TimeStamp.setListIndex(1);
  b.arriveAndShow("one\n");
  b.link.arrive(bytesOf("\xFFtwo"));
  b.loop.runFor(Millis(15));  // read and not shown yet
  b.panel.comDebugClear[0].press();
  b.arriveAndShow("three");
  b.loop.runFor(Millis(1000));
  EXPECT_EQ(fileText(b, kLog), "one\n\xFFtwothree");
  b.open();
  b.open();
  b.arriveAndShow("!");
  b.panel.che_Log.userSet(false);
  EXPECT_EQ(fileText(b, kLog), "one\n\xFFtwothree!");
}

TEST(Log, AsShownHasTheStampsAndMissesNothingOfAFloodOrOfAClearedPane) {
  ToolBench b;
  startLog(b, 1);
  b.panel.che_KeepNewest.setValue(true);
  b.panel.comb_TimeStamp.setListIndex(1);
  b.open();
  b.arriveAndShow("one\n");
  b.link.arrive(bytesOf("two\n"));
  b.loop.runFor(Millis(15));
  b.panel.comDebugClear[0].press();
  b.arriveAndShow(Bytes(3 * RxRing::kCapacity, 'x'));
  b.panel.che_Log.userSet(false);
  const std::string head = "[12:00:00.010] one\n[12:00:00.060] two\n[12:00:00.075] x";
  const std::string text = fileText(b, kLog);
  EXPECT_EQ(text.substr(0, head.size()), head);
  EXPECT_EQ(text.size(), head.size() - 1 + 3 * RxRing::kCapacity);
}

TEST(Log, AFullDiskEndsItInWordsAndTheTerminalGoesOn) {
  ToolBench b;
  startLog(b, 0);
  b.open();
  b.arriveAndShow("a");
  b.loop.runFor(Millis(1000));
  b.files.diskFull = true;
  b.arriveAndShow("b");
  b.loop.runFor(Millis(5000));
  EXPECT_EQ(b.dialogs.shown.size(), 1U);
  EXPECT_EQ(b.lastMessage(), std::string("The log ends: ") + kLog + ": disk full");
  EXPECT_FALSE(b.panel.che_Log.value());
  EXPECT_EQ(b.shown(), "ab");
  b.panel.che_Log.userSet(true);
  EXPECT_EQ(b.dialogs.shown.size(), 2U) << "a log that cannot begin is told, too";
  EXPECT_FALSE(b.panel.che_Log.value());
}

TEST(Paste, GoesOutAtItsPaceWithTheLineEndsOfThePage) {
  ToolBench b;
  b.panel.comb_LineEnd.setListIndex(1);
  b.panel.txtPasteChar.setText("20");
  b.panel.txtPasteLine.setText("100");
  EXPECT_TRUE(b.panel.texReceive.userPaste("ab\ncd"));
  EXPECT_TRUE(b.link.opened) << "as every send it opens the port";
  EXPECT_FALSE(b.panel.texReceive.userPaste("while one is on"));
  EXPECT_EQ(b.sentText(), "a");
  b.loop.runFor(Millis(45));
  EXPECT_EQ(b.sentText(), "ab\r");
  b.loop.runFor(Millis(110));
  EXPECT_EQ(b.sentText(), "ab\r");
  b.loop.runFor(Millis(100));
  EXPECT_EQ(b.sentText(), "ab\rcd");
  EXPECT_EQ(b.panel.labPaste.caption(), "Pasted: 5 of 5 bytes");
  EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:5");
}

TEST(Paste, WaitsForALineThatIsFullAndEndsByItsButtonOrWithItsPort) {
  for (const bool byButton : {true, false}) {
    ToolBench b;
    b.link.pendingOut = 1'000'000;
    EXPECT_TRUE(b.panel.texReceive.userPaste("abc"));
    b.loop.runFor(Millis(5000));
    EXPECT_TRUE(b.panel.comPasteStop.visible());
    (byButton ? b.panel.comPasteStop : b.panel.comOpenCOM[0]).press();
    EXPECT_TRUE(!byButton || b.link.pendingOut == 0) << "what the line has not carried yet is taken back";
    b.link.pendingOut = 0;
    b.loop.runFor(Millis(5000));
    EXPECT_EQ(b.sentText(), "");
    EXPECT_EQ(b.panel.labPaste.caption(), "Paste cancelled: 0 of 3 bytes");
    EXPECT_FALSE(b.panel.comPasteStop.visible());
  }
}

TEST(Sending, IsEchoedAndCalledBackAsTheUserWishes) {
  ToolBench b;
  b.panel.che_LocalEcho.setValue(true);
  b.open();
  b.panel.texSend.setText("first");
  b.panel.comDebugSend.press();
  b.panel.texSend.setText("second");
  b.panel.comDebugSend.press();
  b.arriveAndShow("!");
  b.panel.texReceive.userKeyBytes("\x1B[A");
  b.panel.che_LocalEcho.setValue(false);
  b.panel.texReceive.userKey('k');
  EXPECT_EQ(b.shown(), "firstsecond!\x1B[A");
  EXPECT_EQ(b.sentText(), "firstsecond\x1B[Ak");
  b.panel.comSendOlder.press();
  EXPECT_EQ(b.panel.texSend.text(), "first");
  b.panel.comSendNewer.press();
  EXPECT_EQ(b.panel.texSend.text(), "second");
}

TEST(Receive, HidesEscapeSequencesAndBeginsHexLinesAfterASilenceByChoice) {
  ToolBench b;
  b.panel.che_Escapes.setValue(true);
  b.open();
  b.arriveAndShow("a\x1B[3");
  b.arriveAndShow("1mb");
  EXPECT_EQ(b.shown(), "ab");
  b.panel.comDebugClear[0].press();
  b.showHex();
  b.panel.che_HexLines.setValue(true);
  b.panel.txtHexSilence.setText("200");
  b.arriveAndShow("A");
  b.loop.runFor(Millis(100));
  b.arriveAndShow("B");
  b.loop.runFor(Millis(300));
  b.arriveAndShow("C");
  EXPECT_EQ(b.shown(), "41 42 \n43 ");
}

TEST(Lines, FlowControlModemLinesAndBreakReachThePort) {
  ToolBench b;
  b.panel.comb_Flow.userPick(2);
  b.open();
  EXPECT_EQ(b.link.flow, platform::FlowControl::XonXoff);
  b.panel.comb_Flow.userPick(1);
  EXPECT_EQ(b.link.flow, platform::FlowControl::RtsCts);
  EXPECT_FALSE(b.panel.che_RTS.enabled()) << "the driver's now";
  EXPECT_EQ(b.link.opens, 1);
  b.link.input = platform::InputLines{.cts = true, .ri = true};
  b.loop.runFor(Millis(300));
  EXPECT_TRUE(b.panel.imgLine[0].on() && b.panel.imgLine[3].on());
  EXPECT_FALSE(b.panel.imgLine[1].on() || b.panel.imgLine[2].on());
  b.panel.comBreak.press();
  EXPECT_TRUE(b.link.breaking);
  b.loop.runFor(Millis(300));
  EXPECT_FALSE(b.link.breaking);
  b.link.flowError = {platform::PortError::Kind::BadSettings, "COM1: flow control refused"};
  b.panel.comb_Flow.userPick(2);
  EXPECT_EQ(b.lastMessage(), "COM1: flow control refused");
  EXPECT_EQ(b.panel.comb_Flow.listIndex(), 0);
  b.open();
  EXPECT_FALSE(b.panel.imgLine[0].enabled());
}

TEST(Lines, ARateThatTheAdapterCannotMakeIsRefusedInWords) {
  ToolBench b;
  b.link.made = 2'764'800;
  b.panel.com_Debug_Baud.userType("3000000");
  b.open();
  EXPECT_FALSE(b.link.opened);
  EXPECT_EQ(b.lastMessage(), "COM1: the adapter cannot make 3000000 baud; it would run at 2764800");
  b.panel.com_Debug_Baud.userType("2800000");  // near enough to be read
  b.open();
  EXPECT_TRUE(b.link.opened);
}

TEST(Reopen, FiftyTimesWhenTheAdapterComesBackWithALineEach) {
  ToolBench b;
  b.panel.che_Reopen.setValue(true);
  b.open();
  for (int i = 0; i < 50; ++i) {
    b.arriveAndShow("x" + std::to_string(i));
    b.link.openError = {platform::PortError::Kind::NoSuchDevice, "COM1: no such device"};
    b.link.pullOut();
    EXPECT_FALSE(b.tool.isOpen());
    b.loop.runFor(Millis(1700));
    b.link.openError = {};
    b.loop.runFor(Millis(600));
    ASSERT_TRUE(b.holdsPort()) << i;
  }
  EXPECT_TRUE(b.dialogs.shown.empty());
  EXPECT_EQ(b.link.opens, 51);
  EXPECT_TRUE(b.shown().starts_with("x0\n[12:00:00.050] COM3: the adapter was pulled out\n[12:00:02."));
  EXPECT_TRUE(b.shown().ends_with("] COM1 is open again\n"));
}

TEST(Reopen, EndsWithARunABoxUntickedOrAnotherPort) {
  for (const int way : {0, 1, 2, 3}) {
    ToolBench b;
    b.panel.che_Reopen.setValue(true);
    b.open();
    b.link.pullOut();
    EXPECT_EQ(b.panel.labPort.caption(), "Waiting for COM1 to come back");
    if (way == 0) b.tool.releasePort();
    if (way == 1) b.panel.che_Reopen.userSet(false);
    if (way == 2) b.panel.com_Debug_COM.userPick(4);
    if (way == 3) {
      const auto running = b.activity.begin();
      b.loop.runFor(Millis(3000));
    } else {
      b.loop.runFor(Millis(3000));
      EXPECT_EQ(b.panel.labPort.caption(), "");
    }
    EXPECT_EQ(b.link.opens, 1) << way;
  }
}

}  // namespace
}  // namespace kvr::comtool
