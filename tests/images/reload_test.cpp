// Store, compare, reload and the watcher.
#include <gtest/gtest.h>

#include <numeric>

#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;
using platform::Millis;

std::string hexFile(int value) {
  return hexRecord(0, Bytes(16, static_cast<std::uint8_t>(value))) + "\n" + kEndRecord + "\n";
}

struct WatchTest : ::testing::Test {
  WatchTest() {
    bench.room.watcher.onDownload = [this] { downloads.push_back(bench.room.state.CodeBuffer.at(0)); };
    bench.openCode("/fw.hex", hexFile(1));
    panel.cekReloadFileWhileFileChange.userSet(true);
    bench.loop.runFor(Millis{1500});
  }
  void build(const std::string& text, int ms = 10000, const std::string& path = "/fw.hex") {
    bench.files.put(path, text);
    bench.loop.runFor(Millis{ms});
  }
  ImagesBench bench{"Ivy-HF0S"};
  ImagePanel& panel = bench.room.panel;
  std::vector<int> downloads;
};

TEST_F(WatchTest, ARefusedProjectOrFileOrACancelLeavesTheFileInHand) {
  const std::function<void()> refusals[] = {
      [&] { bench.openCode("/x.KVR", std::string("VER: 1.1\r\nMCU_Type: none")); },
      [&] { bench.choose("/absent.bin", panel.comLoadFile); }, [&] { bench.openCode("/empty.hex", Bytes{}); },
      [&] { panel.comLoadFile.press(); },  // the dialog is cancelled
  };
  bench.room.opener.openProject = [](const std::string&) { return false; };
  int number = 1;
  for (const auto& refuse : refusals) {
    refuse();
    EXPECT_EQ(panel.Frame7.caption(), "Program File: /fw.hex");
    build(hexFile(++number));
    ASSERT_EQ(downloads.size() + 1, static_cast<std::size_t>(number)) << bench.lastBox();
    EXPECT_EQ(downloads.back(), number);
    bench.files.put("/fw.hex", hexFile(++number));
    EXPECT_TRUE(bench.reload()) << "the file in hand, before a run";
    EXPECT_EQ(bench.room.state.CodeBuffer.at(0), number);
    downloads.push_back(number);
  }
}

TEST_F(WatchTest, AProjectThatIsOpenedLeavesNothingToWatchOrToLoadAgain) {
  std::string project;
  bench.room.opener.openProject = [&](const std::string& path) {
    project = path;
    bench.room.loader.clearBuffers();
    bench.room.state.CodeBuffer.put(0, Bytes{1, 2, 3});
    bench.room.state.imageValid = true;
    bench.room.loader.takeProject();
    return true;
  };
  bench.openCode("/work/batch.kvr", std::string("VER: 1.2"));
  EXPECT_EQ(project, "/work/batch.kvr");
  EXPECT_EQ(bench.store.getOr("Settings", "FilePath", ""), "/work/batch.kvr");
  build(hexFile(9));
  EXPECT_TRUE(bench.reload());
  EXPECT_TRUE(downloads.empty());
  EXPECT_EQ(bench.room.state.CodeBuffer.at(2), 3);
}

TEST_F(WatchTest, WaitsForAWholeFileHoweverSlowlyItIsWrittenAnew) {
  bench.files.files.erase("/fw.hex");
  bench.loop.runFor(Millis{5000});
  EXPECT_TRUE(bench.boxes().empty());
  const std::string whole = hexFile(2);
  for (std::size_t count = 1; count + kEndRecord.size() < whole.size(); count += 9) {
    build(whole.substr(0, count), count % 2 == 0 ? 700 : 3100);
    ASSERT_TRUE(downloads.empty()) << count;
  }
  bench.openCode("/fw.hex", whole.substr(0, 30));  // half of it, opened by hand: the end is still to come
  build(whole.substr(0, 44));
  EXPECT_TRUE(downloads.empty());
  build(whole);
  EXPECT_EQ(downloads, std::vector{2});
}

TEST_F(WatchTest, LoadsTheBytesThatItHasJudged) {
  int reads = 0;
  bench.files.afterRead = [&] {
    if (++reads <= 2) bench.files.put("/fw.hex", hexFile(2).substr(0, reads == 1 ? 30 : 60));
  };
  build(hexFile(2), 4500);
  EXPECT_TRUE(downloads.empty()) << "the compiler cut the file while it was read";
  EXPECT_EQ(bench.room.state.CodeBuffer.at(0), 1);
  EXPECT_TRUE(bench.room.state.imageValid);
  build(hexFile(3));
  EXPECT_EQ(downloads, std::vector{3});
}

TEST_F(WatchTest, AChangeDuringARunOrUnderADialogCountsAfterIt) {
  {
    const auto running = bench.activity.begin();
    build(hexFile(2), 20000);
    EXPECT_TRUE(downloads.empty());
    EXPECT_EQ(bench.room.state.CodeBuffer.at(0), 1);
  }
  bench.loop.runFor(Millis{4000});
  EXPECT_EQ(downloads, std::vector{2});

  bench.dialogs.thinking = Millis{8000};
  bench.dialogs.paths.push_back("/other.hex");
  bench.files.put("/other.hex", hexFile(9));
  bench.loop.after(Millis{0}, [&] { panel.comLoadFile.press(); });
  bench.loop.after(Millis{1000}, [&] { bench.files.put("/fw.hex", hexFile(3)); });
  int underDialog = 0;
  bench.loop.after(Millis{7000}, [&] { underDialog = bench.room.state.CodeBuffer.at(0); });
  bench.loop.runFor(Millis{16000});
  EXPECT_EQ(underDialog, 2) << "nothing is loaded under the dialog";
  EXPECT_EQ(downloads, std::vector{2}) << "the file that the user chose is watched from now on";
  EXPECT_EQ(bench.room.state.CodeBuffer.at(0), 9);
}

TEST_F(WatchTest, AFileThatWasLoadedOtherwiseOrOnlyTouchedIsNoChange) {
  bench.files.put("/fw.hex", hexFile(2));
  EXPECT_TRUE(bench.reload());
  bench.loop.runFor(Millis{10000});
  build(hexFile(2));  // a new stamp, the same date and bytes: its rights have changed
  EXPECT_TRUE(downloads.empty());
  bench.openData("/table.bin", Bytes(20, 5));  // does not draw the eye off the code file
  build(hexFile(3));
  EXPECT_EQ(downloads, std::vector{3});
}

TEST_F(WatchTest, NothingGoesOutAfterANoOrWithoutAnImage) {
  build(":0100000011FF\n:0100010022FF\n:0100020033FF\n" + kEndRecord);
  EXPECT_FALSE(bench.room.state.imageValid);
  build(hexFile(2));
  EXPECT_TRUE(downloads.empty());
}

struct ReloadTest : ::testing::Test {
  ImagesBench bench{"Ivy-HF0S"};
  const ImageBuffer& code = bench.room.state.CodeBuffer;
};

TEST_F(ReloadTest, WaitsUntilTheFileIsWholeAndGivesUpOnOneThatNeverIs) {
  bench.openCode("/fw.hex", hexFile(1));
  bench.files.put("/fw.hex", hexRecord(0, Bytes(16, 2)));
  bench.loop.after(Millis{1000}, [&] { bench.files.put("/fw.hex", hexFile(2)); });
  EXPECT_TRUE(bench.reload());
  EXPECT_EQ(code.at(15), 2);
  const auto before = bench.loop.now();
  EXPECT_TRUE(bench.reload());
  EXPECT_EQ(bench.loop.now(), before) << "an unchanged file is taken at once";
  bench.files.put("/fw.hex", hexRecord(0, Bytes(16, 3)));
  EXPECT_FALSE(bench.reload());
  EXPECT_EQ(code.at(15), 2) << "half a file replaces nothing";
  // HEX by what it holds: cut to nothing, or space set aside, it must not be taken for a binary of zeros.
  bench.openCode("/fw.ihx", hexFile(4));
  for (const std::size_t zeros : {0, 600}) {
    bench.files.put("/fw.ihx", Bytes(zeros));
    EXPECT_FALSE(bench.reload()) << zeros;
    EXPECT_EQ(code.at(15), 4);
  }
  bench.files.files.erase("/fw.ihx");
  EXPECT_FALSE(bench.reload());
  EXPECT_EQ(bench.lastBox(), "Can not find the file.");
  EXPECT_TRUE(bench.room.state.imageValid);
}

TEST_F(ReloadTest, ABinaryMustRestAQuarterOfASecondAndStopEndsTheWait) {
  bench.openCode("/fw.bin", Bytes(100, 1));
  for (std::size_t i = 1; i <= 20; ++i)
    bench.loop.after(Millis{100 * i}, [&bench = bench, i] { bench.files.put("/fw.bin", Bytes(10 * i, 2)); });
  bench.files.put("/fw.bin", Bytes(1, 2));
  EXPECT_TRUE(bench.reload());
  EXPECT_EQ(code.at(199), 2) << "the last piece is there";
  EXPECT_GE(bench.loop.now(), Millis{2250});
  for (std::size_t i = 0; i < 100; ++i)
    bench.loop.after(Millis{100 * i}, [&bench = bench, i] { bench.files.put("/fw.bin", Bytes(10 + i, 3)); });
  bench.files.put("/fw.bin", Bytes(9, 3));
  const auto start = bench.loop.now();
  EXPECT_EQ(bench.room.reloader.reload([&] { return bench.loop.now() - start >= Millis{1000}; }),
            ReloadResult::Stopped);
  EXPECT_LE(bench.loop.now() - start, Millis{1250});
  EXPECT_TRUE(bench.boxes().empty());
  EXPECT_FALSE(bench.reload());
  EXPECT_GE(bench.loop.now() - start, Millis{6000}) << "five seconds are given";
  EXPECT_EQ(code.at(0), 2);
}

TEST(Store, WritesTheRangeOfTheBoxes) {
  ImagesBench bench{"Ivy-HF0S"};
  auto& panel = bench.room.panel;
  Bytes firmware(5000);
  std::iota(firmware.begin(), firmware.end(), std::uint8_t{0});
  bench.openCode("/a.bin", firmware);
  const auto& stored = bench.files.files["/out.bin"].bytes;
  const auto store = [&](const std::string& start, const std::string& length) {
    bench.dialogs.shown.clear();
    bench.dialogs.paths = {"/out.bin"};
    panel.txt_Start_Address.setText(start);
    panel.txt_length.setText(length);
    panel.comStoreFile.press();
    return bench.lastBox();
  };
  EXPECT_EQ(store("10", "100"), "");
  EXPECT_EQ(stored, Bytes(firmware.begin() + 0x10, firmware.begin() + 0x110));
  EXPECT_EQ(store("8000", "8001"), "The file size is too big.");
  EXPECT_EQ(store("8G00", "1"), "The start address is too small.");
  EXPECT_EQ(store("0", "0"), "The file size is too small.");
  EXPECT_EQ(stored.size(), 256U);
  bench.files.diskFull = true;
  EXPECT_EQ(store("0", "10"), "The file cannot be written: disk full");
}

TEST(Compare, TellsOfEqualAndOfDifferingBytesAndAsksAtEvery101st) {
  ImagesBench bench{"Ivy-HF0S"};
  Bytes ring;
  bench.room.storeCompare.receivedBytes = [&] { return std::span<const std::uint8_t>(ring); };
  const auto compare = [&] {
    bench.room.storeCompare.compare();
    return bench.textMsg.text();
  };
  bench.openCode("/a.bin", Bytes(1000, 7));
  ring = Bytes(245001, 0);
  std::fill_n(ring.begin(), 1000, std::uint8_t{7});
  const std::string time = "          时    间: 12:00:00\n";
  EXPECT_EQ(compare(), "\n比较完毕，比较范围: 0000H -- 03E7H\n" + time + "MCU AP 区的内容与程序文件缓冲区一致。");
  ring[0x2A] = 0xF1;
  EXPECT_EQ(compare(), "\n地址: 002AH;  文件缓冲区: 07;  MCU: F1\n比较范围: 0000H -- 03E7H\n" + time +
                           "MCU AP 区的内容与程序文件缓冲区不相等。");
  std::fill_n(ring.begin(), 1000, std::uint8_t{0});
  bench.dialogs.yesNo = {true, true, false};
  const std::string text = compare();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 303 + 2);
  EXPECT_NE(text.find("\n比较范围: 0000H -- 012EH\n"), std::string::npos);
  EXPECT_EQ(bench.dialogs.shown.back().text, "不相等的单元已达 100 个， 继续比较请输入 Y\n\n");
}

}  // namespace
}  // namespace kvr::images
