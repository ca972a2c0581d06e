#include <gtest/gtest.h>

#include "tests/comtool/tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(Send, AddsTheChosenLineEndToTextsOnly) {
  ToolBench b;
  b.panel.texSend.setText("A");
  b.panel.texSpreadSend[0].setText("42");
  b.panel.cheSpreadHex[0].setValue(true);
  for (int choice = 0; choice < 4; ++choice) {
    b.panel.comb_LineEnd.userPick(choice);
    b.panel.comDebugSend.press();
    b.panel.comSpreadSendCom[0].press();
  }
  EXPECT_EQ(b.sentText(), "ABA\rBA\nBA\r\nB");
}

TEST(Send, ABadHexadecimalTextSendsNothingAndEndsBothAutomaticSends) {
  for (const bool tooLong : {false, true}) {
    ToolBench b;
    b.rounds({"", "ok"});
    b.panel.optHexSend[1].userChoose();
    b.repeat(tooLong ? std::string(2 * 4098, '1').c_str() : "12 G4", "300");
    b.loop.runFor(Millis(3000));
    EXPECT_TRUE(b.link.sent.empty());
    EXPECT_TRUE(b.tool.isOpen());
    ASSERT_EQ(b.dialogs.shown.size(), 1U);
    EXPECT_EQ(b.lastMessage(),
              tooLong ? "The HEX data is too long, at most 4097 bytes."
                      : "Please input HEX format data: 0-9, A-F, a-f, a space between each two charaters.");
    EXPECT_TRUE(b.automaticSendsRest());
  }
}

TEST(Send, RefusesAnIntervalBelowOne) {
  ToolBench b;
  for (const char* text : {"0", "0.9", "-5", "abc", ""}) {
    b.repeat("x", text);
    EXPECT_EQ(b.lastMessage(), "The interval is too small.");
    b.rounds({"x"}, text);
    EXPECT_EQ(b.lastMessage(), "The interval too short");
  }
  b.loop.runFor(Millis(3000));
  EXPECT_TRUE(b.automaticSendsRest());
  EXPECT_FALSE(b.tool.isOpen());
}

TEST(Send, TheRoundSkipsBlankStringsBeginsBehindTheOneSentLastAndEndsWithoutAny) {
  ToolBench b;
  b.panel.texSpreadSend[2].setText("two");
  b.panel.cheSpreadHex[7].setValue(true);
  b.panel.texSpreadSend[24].setText("end");
  b.panel.comSpreadSendCom[2].press();
  b.rounds({"", "", "two", "   ", "", "", "", "37"}, "10");
  b.loop.runFor(Millis(40));
  EXPECT_EQ(b.sentText(), "two7endtwo7");
  b.panel.texSpreadSend[2].clear();
  b.panel.texSpreadSend[24].clear();
  b.loop.runFor(Millis(20));
  EXPECT_EQ(b.sentText(), "two7endtwo777");
  b.panel.texSpreadSend[7].clear();
  b.loop.runFor(Millis(10));
  EXPECT_EQ(b.panel.comSpreadAutoSend.caption(), "Round Send");
}

TEST(Send, BothAutomaticSendsRunSideBySideEachUntilItIsStopped) {
  ToolBench b;
  b.repeat("a", "30.5");
  b.rounds({"0", "1"}, "20");
  EXPECT_EQ(b.panel.comAutoSend.caption(), "Stop Repeat");
  b.loop.runFor(Millis(125));
  EXPECT_EQ(b.sentText(), "0a1a01a0a1");
  b.panel.comAutoSend.press();
  b.loop.runFor(Millis(20));
  EXPECT_EQ(b.sentText(), "0a1a01a0a10");
  b.panel.comSpreadAutoSend.press();
  b.loop.runFor(Millis(200));
  EXPECT_EQ(b.sentText(), "0a1a01a0a10");
}

TEST(Send, AnAutomaticSendWaitsForALineThatIsTooSlowForIt) {
  ToolBench b;
  b.repeat("x", "1");
  b.link.pendingOut = PortArea::kMaxQueued + 1;
  b.loop.runFor(Millis(100));
  EXPECT_TRUE(b.link.sent.empty());
  b.link.pendingOut = 0;
  b.loop.runFor(Millis(10));
  EXPECT_EQ(b.link.sent.size(), 10U);
}

TEST(Send, KeysGoOutOnlyWhileThePortIsOpen) {
  ToolBench b;
  EXPECT_FALSE(b.panel.texReceive.userKey('a'));
  EXPECT_FALSE(b.tool.isOpen());
  b.open();
  EXPECT_TRUE(b.panel.texReceive.userKey('a'));
  EXPECT_TRUE(b.panel.texReceive.userKey('\r'));
  EXPECT_TRUE(b.panel.texReceive.userKey(U'\u00B5'));
  EXPECT_EQ(b.sentText(), "a\r\xC2\xB5");
  EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:4");
}

}  // namespace
}  // namespace kvr::comtool
