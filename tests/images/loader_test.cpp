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
  ImageState& state = bench.room.state;
  ImageBuffer& code = state.CodeBuffer;
  ImageBuffer& data = state.EepromBuffer;
};

TEST_F(LoaderTest, OpensABinaryByItsButtonAndShowsWhatItIs) {
  bench.openCode("/work/fw.bin", counting(100));
  EXPECT_TRUE(state.imageValid && state.codeLoaded());
  EXPECT_EQ(code.bounds(), (ImageBounds{.fileStart = 0, .fileEnd = 511, .rangeStart = 0, .rangeEnd = 511}));
  EXPECT_EQ(code.at(99), counting(100)[99]);
  EXPECT_TRUE(code.fileWrote(99) && !code.fileWrote(100));
  EXPECT_EQ(panel.Frame7.caption(), "Program File: /work/fw.bin");
  EXPECT_EQ(panel.Label7[1].caption(), "AP File effective length:  512");
  EXPECT_EQ(panel.txtFileCheckSum.text(), "0002DBEH       ");
  EXPECT_EQ(panel.labFileInfo.caption().substr(0, 25), "Size: 100 bytes   CRC-32:");
  EXPECT_NE(panel.labFileInfo.caption().find("2030-01-01 12:00:00"), std::string::npos);
}

TEST_F(LoaderTest, ThePathOfATakenFileIsOnTheDiskAtOnceAndAbsolute) {
  bench.files.put("/current/rel.bin", counting(4));
  bench.room.opener.open("rel.bin", ImageKind::Code);
  bench.openData("/table.bin", counting(4));
  EXPECT_EQ(panel.Frame7.caption(), "Program File: /current/rel.bin");
  EXPECT_EQ((bench.store.values()[{"Settings", "FilePath"}]), "/current/rel.bin");
  EXPECT_EQ((bench.store.values()[{"Settings", "DataFilePath"}]), "/table.bin");
  bench.store.failure = "disk full";
  bench.openCode("/other.bin", counting(4));
  EXPECT_NE(panel.labFileInfo.caption().find("could not be saved: disk full"), std::string::npos);
}

TEST_F(LoaderTest, TheLastFilesAreListedNewestFirstForEveryWindowAndOnesThatAreGoneAreMarked) {
  const auto& recent = bench.room.opener.recent(ImageKind::Code);
  for (int i = 0; i < 12; ++i) bench.openCode("/file" + std::to_string(i) + ".bin", counting(4));
  bench.openCode("/file5.bin", counting(5));
  bench.openData("/data.bin", counting(4));
  bench.files.files.erase("/file11.bin");
  const auto list = recent.list();
  ASSERT_EQ(list.size(), RecentFiles::kMost);
  EXPECT_EQ(list[0], (RecentFile{"/file5.bin", false}));
  EXPECT_EQ(list[1], (RecentFile{"/file11.bin", true}));
  EXPECT_EQ(list.back(), (RecentFile{"/file2.bin", false}));
  EXPECT_EQ(bench.room.opener.recent(ImageKind::Data).list(), (std::vector<RecentFile>{{"/data.bin", false}}));
  bench.openCode("/empty.bin", counting(0));
  EXPECT_EQ(recent.list(), list);
  bench.store.failure = "disk full";
  bench.openCode("/file2.bin", counting(1));
  EXPECT_EQ(recent.list()[0].path, "/file2.bin");
}

TEST_F(LoaderTest, WhatCannotBeReadOrHoldsNoDataLeavesTheFormerImageAndIsTold) {
  bench.files.put("/empty.bin", Bytes{});
  bench.files.put("/notes.hex", std::string("only words\n"));
  bench.files.put("/end.hex", kEndRecord);
  const std::pair<const char*, const char*> cases[] = {
      {"/absent.bin", "The file cannot be read: /absent.bin"},
      {"/absent.hex", "The file cannot be read: /absent.hex"},
      {"/program", "The file cannot be read: /program"},
      {"/empty.bin", "The file is empty: /empty.bin"},
      {"/notes.hex", "No line of the file is a HEX record: /notes.hex"},
      {"/end.hex", "The file holds no data for the memory of this MCU: /end.hex"}};
  panel.txtAP_FileStart.setText("4000");
  for (const bool former : {false, true}) {
    if (former) {
      panel.txtAP_FileStart.setText("0");
      bench.openCode("/ok.bin", counting(600));
    }
    const std::string info = panel.labFileInfo.caption();
    for (const auto& [path, words] : cases) {
      bench.dialogs.shown.clear();
      bench.choose(path, panel.comLoadFile);
      EXPECT_EQ(bench.boxes(), std::vector<std::string>{words});
      bench.choose(path, panel.comLoadDataFile);
      EXPECT_EQ(bench.boxes().size(), 2U);
      EXPECT_TRUE(state.imageValid == former && code.loaded == former && !data.loaded) << path;
    }
    EXPECT_EQ(code.at(599), former ? counting(600)[599] : 0);
    EXPECT_EQ(panel.Frame7.caption(), former ? "Program File: /ok.bin" : "Program File: ");
    EXPECT_EQ(panel.labFileInfo.caption(), info);
  }
}

TEST_F(LoaderTest, RefusesAStartAddressBeyondTheMemoryAndLoadsNothing) {
  bench.openCode("/a.bin", counting(600));
  for (const char* start : {"F400", "100000000", "FFFFFFFF"}) {
    bench.dialogs.shown.clear();
    panel.txtAP_FileStart.setText(start);
    bench.openCode("/b.bin", counting(10));
    EXPECT_EQ(bench.boxes(), std::vector<std::string>{"Start Buffer Address exceeded the valid scope. \n"}) << start;
    EXPECT_EQ(code.at(599), counting(600)[599]);
  }
  panel.txtAP_FileStart.setText("F3FF");
  bench.openCode("/b.bin", counting(1));
  EXPECT_EQ(code.at(0xF3FF), 1) << "the last address of the memory";
  panel.txtAP_FileStart.setText(" 000001000 is read up to the blank");
  bench.openCode("/b.bin", counting(10));
  EXPECT_EQ(code.bounds(),
            (ImageBounds{.fileStart = 0x1000, .fileEnd = 0x1009, .rangeStart = 0x1000, .rangeEnd = 0x1009}));
}

TEST_F(LoaderTest, MergesFilesWhileTheClearBoxIsOff) {
  bench.openCode("/a.bin", counting(2000));
  panel.cheClearAP_Buffer.setValue(false);
  panel.txtAP_FileStart.setText("400");
  const std::string one = hexRecord(0x10, {0xEE}) + "\n" + kEndRecord;
  bench.openCode("/b.hex", one);
  EXPECT_EQ(code.at(0x40F), counting(2000)[0x40F]);
  EXPECT_EQ(code.at(0x410), 0xEE);
  EXPECT_EQ(code.bounds(), (ImageBounds{.fileStart = 0x400, .fileEnd = 0x410, .rangeStart = 0, .rangeEnd = 1999}));
  panel.cheClearAP_Buffer.setValue(true);
  bench.openCode("/b.hex", one);
  EXPECT_EQ(code.at(0x40F), 0);
  EXPECT_EQ(code.rangeStart, 0x400);
}

TEST_F(LoaderTest, AsksAfterThreeBadSums) {
  bench.openCode("/bad.hex", std::string(":0100000011FF\n:0100010022FF\n") + kEndRecord);
  EXPECT_EQ(bench.boxes().size(), 2U) << "two are told, and nothing is asked";
  bench.dialogs.shown.clear();
  const std::string bad = ":0100000011FF\n:0100010022FF\n:0100020033FF\n:0100030044FF\n" + kEndRecord;
  bench.dialogs.yesNo = {true, false};
  bench.openCode("/bad.hex", bad);
  ASSERT_EQ(bench.boxes().size(), 4U);
  EXPECT_EQ(bench.boxes()[0], "The checksum is incorrect:\n\n:0100000011FF");
  EXPECT_TRUE(bench.lastBox().starts_with("Not test Checksum any more. Continue loading the file, Please input Y."));
  EXPECT_EQ(code.at(3), 0x44);
  EXPECT_TRUE(state.imageValid);
  // No: nothing is left, of this load or of an earlier one.
  bench.openCode("/bad.hex", bad);
  EXPECT_FALSE(state.imageValid || code.loaded);
  EXPECT_EQ(std::count(code.bytes().begin(), code.bytes().end(), 0), code.size());
  EXPECT_EQ(panel.txtFileCheckSum.text() + panel.labFileInfo.caption() + panel.Frame7.caption(), "Program File: ");
}

TEST_F(LoaderTest, OddFilesLoadAsWhatTheyHoldAndSaySo) {
  bench.openCode("/odd.hex", hexRecord(0, {0, 0}, 4) + "\n" + hexRecord(0x20, {9}) + "\n" + hexRecord(0x20, {8}));
  EXPECT_EQ(code.at(0x20), 8) << "the last record wins";
  const std::string info = panel.labFileInfo.caption() + panel.txtFileCheckSum.text();
  for (const char* words : {"no end record", "1 record of type 2 to 5", "1 byte is written more than once", "0000011H"})
    EXPECT_NE(info.find(words), std::string::npos) << words;
}

TEST_F(LoaderTest, BytesThatAreClearedCountAsWrittenByNoFile) {
  ImagesBench gap{"Elm-H08A"};
  gap.openCode("/a.bin", counting(4100));
  const ImageBuffer& image = gap.room.state.CodeBuffer;
  EXPECT_TRUE(image.fileWrote(2047) && image.fileWrote(4096));
  EXPECT_EQ(image.at(2048), 0);
  for (const std::int32_t cleared : {2048, 4095}) EXPECT_FALSE(image.fileWrote(cleared)) << cleared;
}

TEST_F(LoaderTest, DataFilesGoToTheirOwnBufferAndANewModelEmptiesBoth) {
  bench.openData("/d.bin", counting(20));
  EXPECT_TRUE(state.imageValid && !state.codeLoaded()) << "an EEPROM file alone is no code";
  bench.openCode("/a.bin", counting(3000));
  panel.txtDataFileStart.setText("10");
  bench.openData("/d.bin", counting(20));
  EXPECT_EQ(data.at(0x10), 1);
  EXPECT_EQ(data.fileEnd, 511);
  EXPECT_EQ(panel.frmDataFlash.caption(), "Data File: /d.bin");
  EXPECT_EQ(panel.txtDataFileCheckSum.text(), "0000546H");
  EXPECT_EQ(code.rangeEnd, 2999);
  bench.room.loader.clearBuffers();
  EXPECT_FALSE(state.imageValid || code.loaded || data.loaded);
  EXPECT_EQ(code.bounds(), ImageBounds{});
  EXPECT_EQ(code.at(0), 0);
  EXPECT_EQ(panel.txt_length.text(), "400");
  EXPECT_EQ(panel.frmDataFlash.caption(), "Data File: ");
}

TEST_F(LoaderTest, AnEepromFileThatNoRunProgramsIsToldAndItsCounterRefusesARun) {
  const std::string words = "The EEPROM file is not programmed in this series.";
  for (const char* model : {"Ivy-HF0S", "Rowan-H20"}) {
    const bool sent = std::string_view(model) == "Ivy-HF0S";
    ImagesBench one{model};
    one.openData("/d.bin", counting(20));
    EXPECT_EQ(one.boxes(), sent ? std::vector<std::string>{} : std::vector<std::string>{words}) << model;
    one.dataCounterBoxes("F", "4", "1");
    one.dialogs.shown.clear();
    EXPECT_EQ(one.room.counters.armForRun(), sent) << model;
    EXPECT_EQ(one.lastBox(), sent ? "" : words);
  }
}

}  // namespace
}  // namespace kvr::images
