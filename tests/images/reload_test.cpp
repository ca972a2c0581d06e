// Store, compare, reload and the watcher.
#include <gtest/gtest.h>

#include <numeric>

#include "images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;
using platform::Millis;

std::string hexFile(std::uint8_t value) {
  return hexRecord(0, Bytes(16, value)) + "\n" + kEndRecord + "\n";
}

struct WatchTest : ::testing::Test {
  WatchTest() {
    bench.room.watcher.onDownload = [this] { downloads.push_back(bench.room.state.CodeBuffer.at(0)); };
    bench.room.watcher.onTrigger = [this] { ++triggers; };
    bench.openCode("/fw.hex", hexFile(1));
    panel.cekReloadFileWhileFileChange.userSet(true);
    bench.loop.runFor(Millis{1500});
  }
  ImagesBench bench{"Ivy-HF0S"};
  ImagePanel& panel = bench.room.panel;
  std::vector<int> downloads;
  int triggers = 0;
};

TEST_F(WatchTest, DownloadsOnceForEachBuild) {
  bench.loop.runFor(Millis{10000});
  EXPECT_TRUE(downloads.empty());
  bench.files.put("/fw.hex", hexFile(2));
  bench.loop.runFor(Millis{10000});
  EXPECT_EQ(downloads, std::vector<int>{2});
  bench.files.put("/fw.hex", hexFile(3));
  bench.loop.runFor(Millis{10000});
  EXPECT_EQ(downloads, (std::vector<int>{2, 3}));
  EXPECT_EQ(triggers, 0);
}

TEST_F(WatchTest, SeesABuildRightAfterALoadButNotOneBeforeItsBoxWasOn) {
  bench.openCode("/new.hex", hexFile(5));
  bench.files.put("/new.hex", hexFile(6));
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(downloads, std::vector<int>{6});
  panel.cekReloadFileWhileFileChange.userSet(false);
  bench.openCode("/third.hex", hexFile(7));
  bench.files.put("/third.hex", hexFile(8));
  panel.cekReloadFileWhileFileChange.userSet(true);
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(downloads, std::vector<int>{6});
  bench.files.put("/third.hex", hexFile(9));
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(downloads, (std::vector<int>{6, 9}));
}

TEST_F(WatchTest, SendsTheCommandInsteadWhenThatBoxIsOn) {
  panel.cekReloadFileWhileFileChange1.userSet(true);
  bench.files.put("/fw.hex", hexFile(2));
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(triggers, 1);
  EXPECT_TRUE(downloads.empty());
}

TEST_F(WatchTest, WaitsForAWholeFileHoweverSlowlyItIsWritten) {
  const std::string whole = hexFile(2);
  for (std::size_t count = 1; count + kEndRecord.size() < whole.size(); count += 9) {
    bench.files.put("/fw.hex", whole.substr(0, count));
    bench.loop.runFor(Millis{count % 2 == 0 ? 700 : 3100});
    ASSERT_TRUE(downloads.empty()) << count;
  }
  bench.files.put("/fw.hex", whole);
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(downloads.back(), 2);
}

TEST_F(WatchTest, SurvivesDeleteAndRename) {
  bench.files.files.erase("/fw.hex");
  bench.loop.runFor(Millis{5000});
  EXPECT_TRUE(downloads.empty());
  EXPECT_TRUE(bench.boxes().empty());
  bench.files.put("/fw.hex", hexFile(4));
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(downloads, std::vector<int>{4});
}

TEST_F(WatchTest, AChangeDuringARunCountsAfterIt) {
  bool busy = true;
  bench.room.watcher.isBusy = [&] { return busy; };
  bench.files.put("/fw.hex", hexFile(2));
  bench.loop.runFor(Millis{20000});
  EXPECT_TRUE(downloads.empty());
  EXPECT_EQ(bench.room.state.CodeBuffer.at(0), 1);
  busy = false;
  bench.loop.runFor(Millis{4000});
  EXPECT_EQ(downloads, std::vector<int>{2});
}

TEST_F(WatchTest, LeavesAnOpenDialogAlone) {
  bool busy = false;
  bench.room.setAlone([&](const std::function<void()>& work) {
    if (busy) return false;
    busy = true;
    work();
    busy = false;
    return true;
  });
  bench.dialogs.thinking = Millis{8000};
  bench.dialogs.paths.push_back("/other.hex");
  bench.files.put("/other.hex", hexFile(9));
  bench.loop.after(Millis{0}, [&] { panel.comLoadFile.press(); });
  bench.loop.after(Millis{1000}, [&] { bench.files.put("/fw.hex", hexFile(2)); });
  int underDialog = 0;
  bench.loop.after(Millis{7000}, [&] { underDialog = bench.room.state.CodeBuffer.at(0); });
  bench.loop.runFor(Millis{16000});
  EXPECT_EQ(underDialog, 1) << "nothing is loaded under the dialog";
  EXPECT_TRUE(downloads.empty()) << "the file that the person chose is watched from now on";
  EXPECT_EQ(bench.room.state.CodeBuffer.at(0), 9);
}

TEST_F(WatchTest, AFileThatWasLoadedOtherwiseIsNoChange) {
  bench.files.put("/fw.hex", hexFile(2));
  EXPECT_TRUE(bench.room.loader.reload());
  bench.loop.runFor(Millis{10000});
  EXPECT_TRUE(downloads.empty());
  // A data file that is opened afterwards does not draw the eye off the code file.
  bench.openData("/table.bin", Bytes(20, 5));
  bench.files.put("/fw.hex", hexFile(3));
  bench.loop.runFor(Millis{5000});
  EXPECT_EQ(downloads, std::vector<int>{3});
}

TEST_F(WatchTest, NothingGoesOutAfterANoOrWithoutAnImage) {
  bench.files.put("/fw.hex", ":0100000011FF\n:0100010022FF\n:0100020033FF\n" + kEndRecord);
  bench.loop.runFor(Millis{10000});
  EXPECT_TRUE(downloads.empty());
  EXPECT_FALSE(bench.room.state.imageValid);
  bench.files.put("/fw.hex", hexFile(2));
  bench.loop.runFor(Millis{10000});
  EXPECT_TRUE(downloads.empty());
}

TEST_F(WatchTest, IsQuietWhileItsBoxesAreOff) {
  panel.cekReloadFileWhileFileChange.userSet(false);
  const auto sleeps = bench.loop.sleeps();
  bench.loop.runFor(Millis{60000});
  EXPECT_LE(bench.loop.sleeps(), sleeps + 2);
}

TEST(Reload, WaitsUntilTheFileIsWholeAndGivesUpOnOneThatNeverIs) {
  ImagesBench bench{"Ivy-HF0S"};
  bench.openCode("/fw.hex", hexFile(1));
  bench.files.put("/fw.hex", hexRecord(0, Bytes(16, 2)));
  bench.loop.after(Millis{1000}, [&] { bench.files.put("/fw.hex", hexFile(2)); });
  EXPECT_TRUE(bench.room.loader.reload());
  EXPECT_EQ(bench.room.state.CodeBuffer.at(15), 2);
  const auto before = bench.loop.now();
  EXPECT_TRUE(bench.room.loader.reload());
  EXPECT_EQ(bench.loop.now(), before) << "an unchanged file is taken at once";
  bench.files.put("/fw.hex", hexRecord(0, Bytes(16, 3)));
  EXPECT_FALSE(bench.room.loader.reload());
  EXPECT_EQ(bench.room.state.CodeBuffer.at(15), 2) << "half a file replaces nothing";
  // HEX by what it holds: cut to nothing, or space set aside, it must not be taken for a binary of zeros.
  bench.openCode("/fw.ihx", hexFile(4));
  for (const std::size_t zeros : {0, 600}) {
    bench.files.put("/fw.ihx", Bytes(zeros));
    EXPECT_FALSE(bench.room.loader.reload()) << zeros;
    EXPECT_EQ(bench.room.state.CodeBuffer.at(15), 4);
  }
}

TEST(Reload, TakesTheFileOfThisWindowWhateverAnotherOneHasOpened) {
  ImagesBench bench{"Ivy-HF0S"};
  bench.openCode("/mine.hex", hexFile(1));
  bench.files.put("/theirs.hex", hexFile(2));
  bench.store.set("Settings", "FilePath", "/theirs.hex");
  EXPECT_TRUE(bench.room.loader.reload());
  EXPECT_EQ(bench.room.state.CodeBuffer.at(0), 1);
}

TEST(Store, WritesTheRangeOfTheBoxes) {
  ImagesBench bench{"Ivy-HF0S"};
  Bytes firmware(5000);
  std::iota(firmware.begin(), firmware.end(), std::uint8_t{0});
  bench.openCode("/a.bin", firmware);
  auto& panel = bench.room.panel;
  panel.txt_Start_Address.setText("10");
  panel.txt_length.setText("100");
  bench.dialogs.paths.push_back("/out.bin");
  panel.comStoreFile.press();
  EXPECT_EQ(bench.files.files.at("/out.bin").bytes, Bytes(firmware.begin() + 0x10, firmware.begin() + 0x110));
  EXPECT_EQ(bench.dialogs.shown.back().title, "Save .bin file");
  panel.txt_Start_Address.setText("8000");
  panel.txt_length.setText("8000");
  bench.dialogs.paths.push_back("/out.bin");
  panel.comStoreFile.press();
  EXPECT_EQ(bench.files.files.at("/out.bin").bytes.size(), 32768U);
  const auto refused = [&](const std::string& start, const std::string& length) {
    bench.dialogs.shown.clear();
    panel.txt_Start_Address.setText(start);
    panel.txt_length.setText(length);
    panel.comStoreFile.press();
    return bench.boxes().empty() ? std::string() : bench.boxes().front();
  };
  EXPECT_EQ(refused("8000", "8001"), "The file size is too big.");
  EXPECT_EQ(refused("8G00", "1"), "The start address is too small.");
  EXPECT_EQ(refused("0", "0"), "The file size is too small.");
  EXPECT_EQ(refused("0", "1x"), "The file size is too small.");
  EXPECT_EQ(refused("", "1"), "") << "an empty start is 0";
  bench.files.diskFull = true;
  bench.dialogs.paths.push_back("/out.bin");
  EXPECT_EQ(refused("0", "10"), "The file cannot be written: disk full");
  EXPECT_EQ(bench.files.files.at("/out.bin").bytes.size(), 32768U);
}

struct CompareTest : ::testing::Test {
  CompareTest() {
    bench.room.storeCompare.receivedBytes = [this] { return std::span<const std::uint8_t>(ring); };
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> result;
    std::string rest = bench.textMsg.text();
    for (std::size_t at; (at = rest.find('\n')) != std::string::npos; rest.erase(0, at + 1))
      result.push_back(rest.substr(0, at));
    result.push_back(rest);
    return result;
  }
  ImagesBench bench{"Ivy-HF0S"};
  Bytes ring;
};

TEST_F(CompareTest, NeedsAnImageAndADump) {
  bench.room.storeCompare.comComp_Click();
  EXPECT_EQ(bench.boxes(), std::vector<std::string>{"    Please open code file.   "});
  bench.openCode("/a.bin", Bytes(1000, 7));
  bench.textMsg.setText("kept");
  bench.room.storeCompare.comComp_Click();
  EXPECT_EQ(bench.textMsg.text(), "kept");
}

TEST_F(CompareTest, TellsOfEqualAndOfDifferingBytes) {
  bench.openCode("/a.bin", Bytes(1000, 7));
  ring = Bytes(245001, 0);
  std::fill_n(ring.begin(), 1000, std::uint8_t{7});
  bench.room.storeCompare.comComp_Click();
  EXPECT_EQ(lines(), (std::vector<std::string>{"", "比较完毕，比较范围: 0000H -- 03E7H", "          时    间: 12:00:00",
                                               "MCU AP 区的内容与程序文件缓冲区一致。"}));
  ring[0x2A] = 0xF1;
  bench.room.storeCompare.comComp_Click();
  EXPECT_EQ(lines(),
            (std::vector<std::string>{"", "地址: 002AH;  文件缓冲区: 07;  MCU: F1", "比较范围: 0000H -- 03E7H",
                                      "          时    间: 12:00:00", "MCU AP 区的内容与程序文件缓冲区不相等。"}));
}

TEST_F(CompareTest, AsksAtEvery101stDifference) {
  bench.openCode("/a.bin", Bytes(1000, 7));
  ring = Bytes(245001, 0);
  bench.dialogs.yesNo = {true, true, false};
  bench.room.storeCompare.comComp_Click();
  EXPECT_EQ(lines().size(), 1 + 303U + 3U);
  EXPECT_EQ(lines()[304], "比较范围: 0000H -- 012EH");
  EXPECT_EQ(bench.dialogs.shown.back().text, "不相等的单元已达 100 个， 继续比较请输入 Y\n\n");
}

}  // namespace
}  // namespace kvr::images
