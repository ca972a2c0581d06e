#include <gtest/gtest.h>

#include "comtool/hex_text.h"
#include "tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(Send, OpensThePortAndSendsTheTextAsItStands) {
  ToolBench b;
  b.panel.texSend.setText(" caf\xC3\xA9 \n");
  b.panel.comDebugSend.press();
  EXPECT_TRUE(b.tool.isOpen());
  EXPECT_EQ(b.sentText(), " caf\xC3\xA9 \n");
  EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:8");
  b.panel.comClearSend.press();
  b.panel.comDebugSend.press();
  EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:8");
}

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

TEST(Send, AFailedOpenSendsAndCountsNothing) {
  ToolBench b;
  b.link.openError = {platform::PortError::Kind::Busy, "in use"};
  b.panel.comDebugSend.press();
  b.tool.send(bytesOf("xyz"));
  EXPECT_EQ(b.panel.labSendCount.caption(), "Send counter:0");
  EXPECT_EQ(b.dialogs.shown.size(), 2U);
}

TEST(Send, ABadHexadecimalTextSendsNothingAndEndsBothAutomaticSends) {
  for (const bool tooLong : {false, true}) {
    ToolBench b;
    std::string text = "12 G4";
    if (tooLong) text = std::string(2 * 4098, '1');
    b.panel.texSend.setText(text);
    b.panel.texSpreadSend[1].setText("ok");
    b.panel.comSpreadAutoSend.press();
    b.panel.optHexSend[1].userChoose();
    b.panel.texSendCycle.setText("300");
    b.panel.comAutoSend.press();
    b.loop.runFor(Millis(3000));
    EXPECT_TRUE(b.link.sent.empty());
    EXPECT_TRUE(b.tool.isOpen());
    ASSERT_EQ(b.dialogs.shown.size(), 1U);
    EXPECT_EQ(b.lastMessage(),
              tooLong ? "The HEX data is too long, at most 4097 bytes."
                      : "Please input HEX format data: 0-9, A-F, a-f, a space between each two charaters.");
    EXPECT_EQ(b.panel.comAutoSend.caption(), "Repeat Send");
    EXPECT_EQ(b.panel.comSpreadAutoSend.caption(), "Round Send");
  }
}

TEST(Send, RepeatsAtTheIntervalUntilItIsStopped) {
  ToolBench b;
  b.panel.texSend.setText("x");
  b.panel.texSendCycle.setText("20.5");
  b.panel.comAutoSend.press();
  EXPECT_EQ(b.panel.comAutoSend.caption(), "Stop Repeat");
  b.loop.runFor(Millis(205));
  EXPECT_EQ(b.sentText(), "xxxxxxxxxx");
  b.panel.comAutoSend.press();
  b.loop.runFor(Millis(205));
  EXPECT_EQ(b.link.sent.size(), 10U);
}

TEST(Send, RefusesAnIntervalBelowOne) {
  ToolBench b;
  for (const char* text : {"0", "0.9", "-5", "abc", ""}) {
    b.panel.texSendCycle.setText(text);
    b.panel.texSpreadSendCycle.setText(text);
    b.panel.comAutoSend.press();
    EXPECT_EQ(b.lastMessage(), "The interval is too small.");
    b.panel.comSpreadAutoSend.press();
    EXPECT_EQ(b.lastMessage(), "The interval too short");
  }
  b.loop.runFor(Millis(3000));
  EXPECT_EQ(b.panel.comAutoSend.caption(), "Repeat Send");
  EXPECT_EQ(b.panel.comSpreadAutoSend.caption(), "Round Send");
  EXPECT_FALSE(b.tool.isOpen());
}

TEST(Send, TheRoundSkipsBlankStringsAndBeginsBehindTheOneSentLast) {
  ToolBench b;
  b.panel.texSpreadSend[2].setText("two");
  b.panel.texSpreadSend[3].setText("   ");
  b.panel.texSpreadSend[7].setText("37");
  b.panel.cheSpreadHex[7].setValue(true);
  b.panel.texSpreadSend[24].setText("end");
  b.panel.texSpreadSendCycle.setText("10");
  b.panel.comSpreadSendCom[2].press();
  EXPECT_EQ(b.tool.sendArea().spreadNext(), 3);
  b.panel.comSpreadAutoSend.press();
  b.loop.runFor(Millis(40));
  EXPECT_EQ(b.sentText(), "two7endtwo7");
}

TEST(Send, OneFilledStringGoesRoundAndNoneEndsTheRound) {
  ToolBench b;
  b.panel.texSpreadSend[7].setText("7");
  b.panel.texSpreadSendCycle.setText("10");
  b.panel.comSpreadAutoSend.press();
  b.loop.runFor(Millis(30));
  EXPECT_EQ(b.sentText(), "777");
  EXPECT_EQ(b.tool.sendArea().spreadNext(), 8);
  b.panel.texSpreadSend[7].setText(" ");
  b.loop.runFor(Millis(10));
  EXPECT_EQ(b.panel.comSpreadAutoSend.caption(), "Round Send");
}

TEST(Send, BothAutomaticSendsRunSideBySide) {
  ToolBench b;
  b.panel.texSend.setText("a");
  b.panel.texSendCycle.setText("30");
  b.panel.texSpreadSend[0].setText("0");
  b.panel.texSpreadSend[1].setText("1");
  b.panel.texSpreadSendCycle.setText("20");
  b.panel.comAutoSend.press();
  b.panel.comSpreadAutoSend.press();
  b.loop.runFor(Millis(125));
  EXPECT_EQ(b.sentText(), "0a1a01a0a1");
}

TEST(Send, AnAutomaticSendWaitsForALineThatIsTooSlowForIt) {
  ToolBench b;
  b.panel.texSend.setText("x");
  b.panel.texSendCycle.setText("1");
  b.panel.comAutoSend.press();
  b.link.pendingOut = SendArea::kMaxQueued + 1;
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

TEST(HexText, ReadsPairsAndLoneDigits) {
  using Fault = HexText::Fault;
  EXPECT_EQ(parseHexText("12 34 CD FF"), (HexText{Fault::None, {0x12, 0x34, 0xCD, 0xFF}}));
  EXPECT_EQ(parseHexText("1234cdFF"), (HexText{Fault::None, {0x12, 0x34, 0xCD, 0xFF}}));
  EXPECT_EQ(parseHexText("1 2 3"), (HexText{Fault::None, {1, 2, 3}}));
  EXPECT_EQ(parseHexText("F"), (HexText{Fault::None, {0x0F}}));
  EXPECT_EQ(parseHexText("ABC"), (HexText{Fault::None, {0xAB, 0x0C}}));
  EXPECT_EQ(parseHexText("A BC   D"), (HexText{Fault::None, {0x0A, 0xBC, 0x0D}}));
  EXPECT_EQ(parseHexText("   "), HexText{});
  for (const char* bad : {"0x12", "12,34", "1\t2", "12\r", "G", "12 \xC3\xA9"})
    EXPECT_EQ(parseHexText(bad), (HexText{Fault::BadCharacter, {}})) << bad;
  EXPECT_EQ(parseHexText(std::string(2 * 4097, 'A')).bytes.size(), 4097U);
  EXPECT_EQ(parseHexText(std::string(2 * 4097 + 1, 'A')), (HexText{Fault::TooLong, {}}));
}

}  // namespace
}  // namespace kvr::comtool
