// Whole sessions with a simulated board: what it holds afterwards, what the pane says, and every way in which it can
// fail.
#include <gtest/gtest.h>

#include "tests/offline/offline_bench.h"

namespace {

using namespace kvr::offline;
using kvr::platform::Instant;

sim::BoardConfig boardOf(int version, bool secondBank) {
  sim::BoardConfig config;
  config.version = version;
  config.secondBank = secondBank;
  return config;
}

TEST(OfflineSession, GivesEachKindOfBoardWhatItCanHold) {
  struct {
    int version;
    bool secondBank;
    int size;
    const char* ok;
    int leftOut;
  } const rows[] = {
      {0x15, false, 61440, "Download OK. / 下载成功。", 17408},
      {0x17, false, 30000, "Download OK. / 下载成功。", 0},
      {0x16, false, 30000, "Program OK.", 0},
      {0x16, false, 61440, "Program OK.", 9216},
      {0x16, true, 61440, "Program OK.", 0},
      {0x17, true, 61440, "Program OK.", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << std::hex << row.version << (row.secondBank ? " bank " : " ") << std::dec
                                    << row.size);
    OfflineBench bench(boardOf(row.version, row.secondBank));
    bench.loadNoise(row.size);
    bench.keepWanted();
    bench.run();
    EXPECT_EQ(bench.lines(row.ok), 1) << bench.textMsg.text();
    EXPECT_TRUE(bench.boardHoldsImage());
    sim::FlashMemory flash(65536, 65536, 1);
    EXPECT_EQ(bench.board.job().programNext(flash).leftOut, row.leftOut);
    EXPECT_EQ(bench.lines(std::to_string(row.leftOut) + " bytes of the code and data will not be programmed."),
              row.leftOut > 0 ? 1 : 0);
    EXPECT_TRUE(bench.board.violations().empty()) << bench.board.violations().front().text;
    EXPECT_TRUE(bench.idle());
    EXPECT_FALSE(bench.ProgressBar1.visible());
  }
}

TEST(OfflineSession, WakesABoardThatWaitsInASortingMachine) {
  OfflineBench bench;
  bench.loadNoise(30000);
  bench.page.txt_download_max.setText("3000");
  bench.run(Millis(0));
  EXPECT_EQ(bench.board.wakes(), 1);
  EXPECT_TRUE(bench.board.violations().empty());
  EXPECT_TRUE(bench.saidOk());
  bench.page.che_staple[0].setValue(false);
  bench.loadNoise(1000, 8);
  bench.page.txt_download_max.setText("2");
  bench.keepWanted();
  bench.run(Millis(0));
  EXPECT_EQ(bench.board.wakes(), 1) << "not asked for";
  EXPECT_TRUE(bench.saidOk());
  EXPECT_TRUE(bench.boardHoldsImage()) << "nothing of the larger code before it";
  EXPECT_EQ(bench.board.job().remaining(), 2);
}

TEST(OfflineSession, CatchesABoardThatWasSilentForAnHour) {
  OfflineBench bench;
  bench.loadNoise(1000);
  std::string pane;
  bench.loop.after(Millis(40 * 60 * 1000), [&] { pane = bench.textMsg.text(); });
  bench.run(Millis(3600 * 1000));
  EXPECT_NE(pane.find("\nWaiting for the board: 39:58"), std::string::npos) << pane;
  EXPECT_TRUE(bench.saidOk());
}

TEST(OfflineSession, RefusesBeforeThePortIsOpened) {
  constexpr auto unsupported = "The off-line board does not support this MCU type.";
  struct {
    const char* model;
    bool loaded;
    const char* limit;
    const char* words;
  } const rows[] = {
      {"Alder-H100D", true, "5", unsupported},
      {"Rowan-H40", true, "5", unsupported},
      {"Ivy-HF0S", false, "5", "Please open code file."},
      {"Ivy-HF0S", true, "0", "The number of MCU is too small."},
  };
  for (const auto& row : rows) {
    OfflineBench bench;
    bench.choose(row.model);
    if (row.loaded) bench.loadNoise(1000);
    bench.page.txt_download_max.setText(row.limit);
    bench.run();
    EXPECT_EQ(bench.lastMessage(), row.words);
    EXPECT_EQ(bench.dialogs.shown.size(), 1u);
    EXPECT_EQ(bench.link.opens, 0);
    EXPECT_TRUE(bench.idle());
  }
}

TEST(OfflineSession, HoldsTheCapacityToTheModelAndTakesNoneForGranted) {
  OfflineBench bench;
  bench.loadNoise(61440);
  bench.run();
  EXPECT_EQ(bench.offline.board().capacity, 62464) << "64K, held to the model";
  auto config = boardOf(0x17, true);
  config.wrongReplyTo[0x0E] = 9;
  OfflineBench mute(config);
  mute.loadNoise(3000);
  mute.run();
  EXPECT_EQ(mute.lastMessage(),
            "The maximum size of downloading code and data is 0K, The exceeding part won't be downloaded.");
  EXPECT_EQ(mute.lines("3000 bytes of the code and data will not be programmed."), 1);
}

TEST(OfflineSession, GetsOverWhatPassesAndEndsInWordsWhateverTheBoardDoes) {
  struct {
    const char* words;  // the pane's line
    std::size_t beeps;
    std::vector<std::string> faults;
  } const ends[] = {
      {"Program OK.",
       0,
       {"silent 80:30", "badCrc 80:5", "silent 0C:3", "wrongReply 0C:3", "badCrc 0C:3", "silent 0E:3", "silent 84:5",
        "badCrc 84:5", "silent 86:5", "failsPage 40:1", "failsPage 40:5", "failsPage 40:5:silent", "failsPage 121:2",
        "wrongReply 00:3", "badCrc 00:3", "silent 00:3"}},
      {"Connection failed!", 0, {"silent 80:100000", "silent 0C:4", "wrongReply 0C:4", "silent 0E:4", "badCrc 0E:4"}},
      {"Erasing MCU failed.", 0, {"silent 84:6", "badCrc 84:6", "silent 86:6"}},
      {"Program failure!",
       3,
       {"failsPage 40:6", "failsPage 40:6:silent", "failsPage 121:3", "diesAfterPages 60", "diesAfterPages 90"}},
  };
  for (const auto& end : ends)
    for (const std::string& fault : end.faults) {
      SCOPED_TRACE(fault);
      auto config = boardOf(0x16, false);
      ASSERT_TRUE(sim::setBoardFault(config, fault.substr(0, fault.find(' ')), fault.substr(fault.find(' ') + 1)));
      OfflineBench bench(config);
      bench.loadNoise(50000);
      bench.keepWanted();
      bench.run();
      EXPECT_EQ(bench.lines(end.words), 1) << bench.textMsg.text();
      EXPECT_EQ(bench.saidOk(), &end == &ends[0]);
      EXPECT_TRUE(!bench.saidOk() || bench.boardHoldsImage());
      EXPECT_TRUE(bench.board.violations().empty()) << bench.board.violations().front().text;
      EXPECT_EQ(bench.lines("Operation stopped. "), 0);
      EXPECT_TRUE(bench.idle());
      bench.loop.runFor(Millis(1000));  // beeps are queued
      EXPECT_EQ(bench.dialogs.beeps.size(), end.beeps);
    }
}

TEST(OfflineSession, StopsAtOnceWhereverItWaits) {
  OfflineBench whole(boardOf(0x16, false));
  whole.loadNoise(50000);
  whole.run();
  const auto length = std::chrono::duration_cast<Millis>(whole.loop.now());
  for (Millis at(1); at < length; at += length / 60 + Millis(13)) {
    SCOPED_TRACE(at.count());
    OfflineBench bench(boardOf(0x16, false));
    bench.loadNoise(50000);
    bool pressed = false;
    bench.loop.after(at, [&] {
      pressed = bench.panel.comStop_Download.enabled();
      bench.panel.comStop_Download.press();
    });
    bench.run();
    if (!pressed) continue;
    EXPECT_LE(bench.loop.now() - at, Millis(200));
    EXPECT_EQ(bench.lines("Operation stopped. "), 1) << bench.textMsg.text();
    EXPECT_EQ(bench.lines("Connection failed!") + bench.lines("Program failure!") + bench.lines("Erasing MCU failed."),
              0);
    EXPECT_FALSE(bench.saidOk());
    EXPECT_EQ(bench.dialogs.beeps.size(), 1u);
    EXPECT_TRUE(bench.idle());
  }
}

TEST(OfflineSession, RefusesABatchThatOutgrowsItsSerialValues) {
  OfflineBench bench;
  bench.loadNoise(5000);
  bench.countUp("10", "2147483000", true);
  bench.run();
  EXPECT_EQ(bench.lastMessage(),
            "Auto increment + (increment * 'Number of MCU') too big( >2147483648 ), \n"
            "Please decrease the auto increment value, or decrease the increment value，\n"
            "or decrease the number of MCU.");
  EXPECT_EQ(bench.lines("Operation stopped. "), 1);
  EXPECT_EQ(bench.board.stage(), 0) << "nothing was erased";
  EXPECT_TRUE(bench.idle());
}

}  // namespace
