#include <gtest/gtest.h>

#include "tests/comtool/tool_bench.h"

namespace kvr::comtool {
namespace {

TEST(Receive, ACharacterThatNeverEndsShowsAfterAWhile) {
  ToolBench b;
  b.open();
  b.arriveAndShow("a\xE6\xB8");
  EXPECT_EQ(b.shown(), "a");
  b.loop.runFor(Millis(600));
  EXPECT_EQ(b.shown(), "a\xEF\xBF\xBD\xEF\xBF\xBD");
  b.arriveAndShow("\xC3");
  b.showHex();
  b.arriveAndShow("A");
  EXPECT_EQ(b.shown(),
            "a\xEF\xBF\xBD\xEF\xBF\xBD"
            "C3 41 ");
}

TEST(Receive, AnOverflowingRingDropsTheNewestAndTheFullPaneTheOldest) {
  ToolBench b;
  b.panel.che_KeepNewest.setValue(true);
  b.open();
  Bytes flood(RxRing::kCapacity, 'a');
  flood.insert(flood.end(), 500, 'b');
  b.arriveAndShow(flood);
  EXPECT_EQ(b.received(), "245499");
  EXPECT_EQ(b.panel.texReceive.length(), ReceiveArea::kDisplayLimit);
  EXPECT_EQ(b.shown().find('b'), std::string::npos);
  b.arriveAndShow("c");
  EXPECT_TRUE(b.tool.isOpen());
  EXPECT_TRUE(b.shown().ends_with("ac"));
  EXPECT_LE(b.panel.texReceive.length(), ReceiveArea::kDisplayLimit);
}

TEST(Receive, TheDisplayLimitCutsStopsTellsAndKeepsThePaneForTheReader) {
  ToolBench b;
  int stops = 0;
  b.tool.stopRun = [&] { ++stops; };
  b.open();
  b.panel.comAutoSend.press();
  b.arriveAndShow(Bytes(ReceiveArea::kDisplayLimit, 'a'));
  EXPECT_TRUE(b.dialogs.shown.empty());
  b.arriveAndShow("z");
  EXPECT_EQ(b.lastMessage(), "The display text is too long, please click the Clear Receive button.");
  EXPECT_EQ(stops, 1);
  EXPECT_FALSE(b.link.opened);
  EXPECT_EQ(b.panel.comAutoSend.caption(), "Repeat Send");
  EXPECT_EQ(b.panel.texReceive.length(), ReceiveArea::kDisplayLimit);
  b.panel.comDebugClear[0].press();
  EXPECT_EQ(b.shown(), "");
  EXPECT_EQ(b.received(), "230001");
}

TEST(Receive, AFullPaneTellsItOnceAlsoWhenTheTextEndsInTheMiddleOfACharacter) {
  ToolBench b;
  b.open();
  Bytes flood(ReceiveArea::kDisplayLimit + 1, 'a');
  flood.insert(flood.end(), {0xE6, 0xB8});
  b.arriveAndShow(flood);
  b.loop.runFor(Millis(1000));
  EXPECT_EQ(b.dialogs.shown.size(), 1U);
}

TEST(Receive, ClearEmptiesThePaneAndTheRingButNotTheCounters) {
  ToolBench b;
  int monitorCleared = 0;
  b.tool.clearMonitor = [&] { ++monitorCleared; };
  b.open();
  b.link.arrive(bytesOf("abc"));
  b.loop.runFor(Millis(15));
  b.panel.comDebugClear[0].press();
  b.arriveAndShow("def");
  EXPECT_EQ(b.tool.rxRing().buffer()[0], 'd') << "the ring begins anew";
  EXPECT_EQ(monitorCleared, 0);
  b.panel.comDebugClear[2].press();
  EXPECT_EQ(monitorCleared, 1);
  EXPECT_EQ(b.shown(), "def");
  EXPECT_EQ(b.received(), "6");
  b.panel.comClearCount.press();
  EXPECT_EQ(b.received(), "0");
  b.panel.comDebugHelp[0].press();
  EXPECT_TRUE(b.shown().starts_with("                COM debug Tool guide\n")) << "in place of the pane's text";
}

TEST(Receive, StampsEveryLineOnceAndABurstOnALineOfItsOwn) {
  ToolBench b;
  b.panel.comb_TimeStamp.setListIndex(1);
  b.open();
  for (const char* piece : {"one\r", "\n\ntw", "o\n"}) b.arriveAndShow(piece);
  EXPECT_EQ(b.shown(), "[12:00:00.010] one\r\n\n[12:00:00.060] two\n");
  b.panel.comDebugClear[0].press();
  b.panel.comb_TimeStamp.setListIndex(2);
  b.arriveAndShow("ab");
  b.arriveAndShow("cd");
  b.loop.runFor(Millis(400));
  b.showHex();
  b.arriveAndShow("e");
  EXPECT_EQ(b.shown(), "[12:00:00.160] abcd\n[12:00:00.660] 65 ");
}

TEST(Receive, FindGoesRoundInBothDirectionsAndPausesTheScrolling) {
  ToolBench b;
  b.open();
  b.arriveAndShow("Alpha beta\nALPHA gamma");
  b.panel.texFind.setText("alpha");
  std::vector<PaneText::Position> places;
  b.panel.texReceive.revealRequest = [&](PaneText::Position at) { places.push_back(at); };
  b.panel.comFindNext.press();
  b.panel.comFindNext.press();
  b.panel.comFindNext.press();
  b.panel.comFindPrevious.press();
  EXPECT_EQ(places, (std::vector<PaneText::Position>{0, 11, 0, 11}));
  EXPECT_EQ(b.panel.texReceive.selectedText(), "ALPHA");
  EXPECT_FALSE(b.panel.che_AutoScroll.value());
  b.panel.texFind.setText("delta");
  b.panel.comFindNext.press();
  EXPECT_EQ(b.panel.labFind.caption(), "Not found");
}

TEST(Receive, SavesThePaneAsItCameAndTellsWhenItCannot) {
  ToolBench b;
  b.open();
  b.arriveAndShow(std::string_view("a\0b\r\n\xC2\xB5", 7));
  b.dialogs.paths = {"/log.txt", "/other.txt"};
  b.panel.comSaveReceive.press();
  EXPECT_EQ(b.files.read("/log.txt"), (Bytes{'a', 0, 'b', '\r', '\n', 0xC2, 0xB5}));
  b.files.diskFull = true;
  b.panel.comSaveReceive.press();
  EXPECT_NE(b.lastMessage().find("The file cannot be written"), std::string::npos);
}

}  // namespace
}  // namespace kvr::comtool
