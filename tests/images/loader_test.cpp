#include "images/loader.h"

#include <gtest/gtest.h>

#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;

Bytes counting(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + 1);
  return bytes;
}

struct LoaderTest : ::testing::Test {
  ImagesBench bench{"Ivy-HF0S"};
  ImagePanel& panel = bench.room.panel;
  ImageBuffer& code = bench.room.state.CodeBuffer;
  ImageBuffer& data = bench.room.state.EepromBuffer;
};

TEST_F(LoaderTest, OpensABinaryByItsButtonAndShowsWhatItIs) {
  bench.openCode("/work/fw.bin", counting(100));
  EXPECT_TRUE(bench.room.state.imageValid);
  EXPECT_EQ(code.bounds(), (ImageBounds{.fileStart = 0, .fileEnd = 511, .rangeStart = 0, .rangeEnd = 511}));
  EXPECT_EQ(code.at(99), counting(100)[99]);
  EXPECT_TRUE(code.fileWrote(99));
  EXPECT_FALSE(code.fileWrote(100));
  EXPECT_EQ(panel.Frame7.caption(), "Program File: /work/fw.bin");
  EXPECT_EQ(panel.Label7[1].caption(), "AP File effective length:  512");
  EXPECT_EQ(panel.txtFileCheckSum.text(), "0002DBEH       ");
  EXPECT_EQ(bench.store.getOr("Settings", "FilePath", ""), "/work/fw.bin");
  EXPECT_EQ(panel.labFileInfo.caption().substr(0, 25), "Size: 100 bytes   CRC-32:");
  EXPECT_NE(panel.labFileInfo.caption().find("2030-01-01 12:00:00"), std::string::npos);
}

TEST_F(LoaderTest, DialogStartsAtTheLastFileAsLongAsItExists) {
  bench.openCode("/work/fw.bin", counting(4));
  EXPECT_EQ(bench.dialogs.shown.front().title, "Open file ( *.hex or *.bin )");
  EXPECT_EQ(bench.dialogs.shown.front().text, "/program|");
  bench.openData("/work/table.bin", counting(4));
  EXPECT_EQ(bench.dialogs.shown.back().title, "Open Data file ( *.hex or *.bin )");
  bench.dialogs.shown.clear();
  panel.comLoadFile.press();
  EXPECT_EQ(bench.dialogs.shown.front().text, "/work/fw.bin|fw.bin");
  EXPECT_EQ(bench.store.getOr("Settings", "FilePath", ""), "/program") << "a cancelled dialog forgets the code file";
  EXPECT_EQ(bench.store.getOr("Settings", "DataFilePath", ""), "/work/table.bin");
  EXPECT_TRUE(bench.room.state.imageValid);
}

TEST_F(LoaderTest, HandsProjectsOn) {
  std::string project;
  bench.room.loader.openProject = [&](const std::string& path) { project = path; };
  bench.openCode("/work/batch.kvr", std::string("VER: 1.2"));
  EXPECT_EQ(project, "/work/batch.kvr");
  EXPECT_FALSE(bench.room.state.imageValid);
  // A run that reloads its file leaves a project's image alone.
  bench.room.state.imageValid = true;
  code.put(0, Bytes{1, 2, 3});
  EXPECT_TRUE(bench.room.loader.reload());
  bench.openCode("/a.bin", Bytes(600, 9));
  bench.room.loader.imageIsNoFiles();
  code.put(0, Bytes{1, 2, 3});
  EXPECT_TRUE(bench.room.loader.reload());
  EXPECT_EQ(code.at(2), 3);
}

TEST_F(LoaderTest, RefusesAStartAddressBeyondTheMemoryAndLoadsNothing) {
  bench.openCode("/a.bin", counting(600));
  panel.txtAP_FileStart.setText("F400");
  bench.openCode("/b.bin", counting(10));
  EXPECT_EQ(bench.boxes(), std::vector<std::string>{"Start Buffer Address exceeded the valid scope. \n"});
  EXPECT_EQ(code.at(599), counting(600)[599]);
  panel.txtAP_FileStart.setText(" 1000 is read up to the blank");
  bench.openCode("/b.bin", counting(10));
  EXPECT_EQ(code.fileStart, 0x1000);
  EXPECT_EQ(code.fileEnd, 0x1009);
  EXPECT_EQ(code.rangeStart, 0x1000);
  EXPECT_EQ(code.at(0x1000), 1);
}

TEST_F(LoaderTest, MergesFilesWhileTheClearBoxIsOff) {
  bench.openCode("/a.bin", counting(2000));
  panel.cheClearAP_Buffer.setValue(false);
  panel.txtAP_FileStart.setText("400");
  bench.openCode("/b.hex", hexRecord(0x10, {0xEE}) + "\n" + kEndRecord);
  EXPECT_EQ(code.at(0x40F), counting(2000)[0x40F]);
  EXPECT_EQ(code.at(0x410), 0xEE);
  EXPECT_EQ(code.rangeStart, 0);
  EXPECT_EQ(code.rangeEnd, 1999);
  EXPECT_EQ(code.fileStart, 0x400);
  EXPECT_EQ(code.fileEnd, 0x410);
  // Switched on again, the next file stands alone.
  panel.cheClearAP_Buffer.setValue(true);
  bench.openCode("/b.hex", hexRecord(0x10, {0xEE}) + "\n" + kEndRecord);
  EXPECT_EQ(code.at(0x40F), 0);
  EXPECT_EQ(code.rangeStart, 0x400);
  EXPECT_EQ(code.rangeEnd, 0x410);
}

TEST_F(LoaderTest, AsksAfterThreeBadSums) {
  bench.openCode("/bad.hex", std::string(":0100000011FF\n:0100010022FF\n") + kEndRecord);
  EXPECT_EQ(bench.boxes().size(), 2U) << "two are told, and nothing is asked";
  bench.dialogs.shown.clear();
  const std::string bad = ":0100000011FF\n:0100010022FF\n:0100020033FF\n:0100030044FF\n" + kEndRecord;
  bench.dialogs.yesNo = {true, false};
  bench.openCode("/bad.hex", bad);
  const auto boxes = bench.boxes();
  ASSERT_EQ(boxes.size(), 4U);
  EXPECT_EQ(boxes[0], "The checksum is incorrect:\n\n:0100000011FF");
  EXPECT_EQ(boxes[3],
            "Not test Checksum any more. Continue loading the file, Please input Y.\n\nStop loading the file. Return "
            "immediately, please input N");
  EXPECT_EQ(code.at(3), 0x44);
  EXPECT_TRUE(bench.room.state.imageValid);
  // No: nothing is left, of this load or of an earlier one.
  bench.openCode("/bad.hex", bad);
  EXPECT_FALSE(bench.room.state.imageValid || code.loaded);
  EXPECT_EQ(std::count(code.bytes().begin(), code.bytes().end(), 0), code.size());
  EXPECT_EQ(panel.txtFileCheckSum.text() + panel.labFileInfo.caption(), "");
  EXPECT_EQ(panel.Frame7.caption(), "Program File: ");
}

TEST_F(LoaderTest, UnreadableFilesLeaveNoImageThatARunCouldTake) {
  bench.dialogs.paths.push_back("/absent.hex");
  panel.comLoadFile.press();
  EXPECT_FALSE(bench.room.state.imageValid);
  EXPECT_FALSE(code.loaded);
  EXPECT_EQ(bench.boxes().size(), 0U);
  EXPECT_EQ(panel.labFileInfo.caption(), "The file cannot be read.");
  EXPECT_EQ(panel.txtBuffer2.model.firstAddress(), 0) << "the view stands on an empty range";
  bench.openCode("/ok.bin", counting(8));
  bench.files.files.erase("/ok.bin");
  EXPECT_FALSE(bench.room.loader.reload());
  EXPECT_EQ(bench.boxes(), std::vector<std::string>{"Can not find the file."});
  EXPECT_TRUE(bench.room.state.imageValid);
}

TEST_F(LoaderTest, EmptyAndOddFilesLoadAsWhatTheyHoldAndSaySo) {
  const auto info = [&](const std::string& path, const std::string& text) {
    bench.openCode(path, text);
    return panel.labFileInfo.caption() + panel.txtFileCheckSum.text();
  };
  const auto has = [](const std::string& text, const char* words) { return text.find(words) != std::string::npos; };
  EXPECT_TRUE(has(info("/empty.bin", ""), "0000000H"));
  EXPECT_EQ(code.fileEnd, 511);
  EXPECT_TRUE(has(info("/empty.hex", ""), "no line of this file is a HEX record"));
  EXPECT_EQ(code.fileEnd, 511);
  EXPECT_TRUE(has(info("/half.hex", hexRecord(0, {1, 2})), "no end record"));
  const std::string old = info("/old.hex", hexRecord(0, {0, 0}, 4) + "\n" + hexRecord(0x20, {9}) + "\n" +
                                               hexRecord(0x20, {8}) + "\n" + kEndRecord);
  for (const char* words : {"1 record of type 2 to 5", "1 byte is written more than once", "0000011H"})
    EXPECT_TRUE(has(old, words)) << words;
}

TEST_F(LoaderTest, SurvivesAHundredMegabytes) {
  Bytes huge(100'000'000, 0xA5);
  bench.openCode("/huge.bin", huge);
  EXPECT_EQ(bench.dialogs.shown.back().title, "Open BIN file");
  EXPECT_EQ(code.rangeEnd, 0xEFFF);
  EXPECT_EQ(code.at(0x12000), 0xA5) << "what fits is kept";
  std::fill(huge.begin(), huge.end(), '0');
  for (std::size_t i = 0; i < huge.size(); i += 50) huge[i] = '\n';
  bench.openCode("/huge.hex", huge);
  EXPECT_EQ(code.fileEnd, 511);
}

TEST_F(LoaderTest, DataFilesGoToTheirOwnBufferAndANewModelEmptiesBoth) {
  bench.openCode("/a.bin", counting(3000));
  panel.txtDataFileStart.setText("10");
  bench.openData("/d.bin", counting(20));
  EXPECT_EQ(data.at(0x10), 1);
  EXPECT_EQ(data.fileEnd, 511);
  EXPECT_TRUE(data.loaded);
  EXPECT_EQ(panel.frmDataFlash.caption(), "Data File: /d.bin");
  EXPECT_EQ(panel.txtDataFileCheckSum.text(), "0000546H");
  EXPECT_EQ(code.rangeEnd, 2999);
  EXPECT_EQ(code.at(0), 1);
  bench.room.loader.clearBuffers();
  EXPECT_FALSE(bench.room.state.imageValid || code.loaded || data.loaded);
  EXPECT_EQ(code.bounds(), ImageBounds{});
  EXPECT_EQ(code.at(0), 0);
  EXPECT_EQ(panel.txt_length.text(), "400");
  EXPECT_EQ(panel.frmDataFlash.caption(), "Data File: ");
}

}  // namespace
}  // namespace kvr::images
