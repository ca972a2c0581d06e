#include "project/project_room.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "tests/project/project_bench.h"

namespace kvr::project {
namespace {

using platform::Bytes;

class ProjectRoomTest : public ::testing::Test, public ProjectBench {
 protected:
  void put(const std::string& text) { files.put("/p.KVR", text); }
  bool open(const std::string& text) {
    put(text);
    return room.openProject("/p.KVR");
  }
};

TEST_F(ProjectRoomTest, BringsBackEveryModelWithItsImagesOptionsAndCounters) {
  std::mt19937 random(4711);
  for (const auto& record : catalogue::allRows()) {
    const auto* meant = catalogue::findByName(record.name);
    if (meant != &record) continue;
    ASSERT_TRUE(select(std::string(record.name)));
    fill(random, 1 + random() % 3000);
    chooseAtRandom(random);
    images.panel.texAuto_Increase[2].setText(std::to_string(random() % 1000));
    images.panel.optAuto_Increase[random() % 3].setValue(true);
    images.panel.cheAuto_Increase.setValue(false);
    save("/p.KVR");
    const std::string file = fileText("/p.KVR");
    save("/p.KVR");
    EXPECT_EQ(fileText("/p.KVR"), file) << record.name;
    const bool hasData = images.state.EepromBuffer.loaded;
    const Bytes code = kept(images.state.CodeBuffer), data = kept(images.state.EepromBuffer);
    const std::string before = look();

    select("Hazel-H04");
    room.unlockOptions();
    ASSERT_TRUE(room.openProject("/p.KVR"));
    lock.set(platform::UiLock::kFree);
    ASSERT_EQ(look(), before) << record.name;
    ASSERT_EQ(kept(images.state.CodeBuffer), code) << record.name;
    ASSERT_EQ(images.state.EepromBuffer.loaded, hasData) << record.name;
    ASSERT_TRUE(!hasData || kept(images.state.EepromBuffer) == data) << record.name;
  }
}

// The file is as the window of 4.88 has saved it, before there was a package; later lines may be added to it.
TEST_F(ProjectRoomTest, SavesEveryLineOfAnOlderProgramsProjectAgain) {
  std::ifstream file(KVR_SOURCE_DIR "/tests/data/project-4.88.KVR", std::ios::binary);
  const std::string old{std::istreambuf_iterator<char>(file), {}};
  ASSERT_TRUE(open(old));
  save("/again.KVR");
  const auto linesOf = [](const std::string& text) {
    std::set<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.insert(platform::trim(line));
    return lines;
  };
  const auto before = linesOf(old), after = linesOf(fileText("/again.KVR"));
  for (const auto& line : before) EXPECT_TRUE(after.contains(line)) << line.substr(0, 60);
  EXPECT_GT(before.size(), 40u);
}

TEST_F(ProjectRoomTest, WritesTheLinesOfAProjectInTheirOrder) {
  select("Cedar-H10R");
  images.state.imageValid = true;
  place(images.state.CodeBuffer, {1, 2});
  images.panel.texAuto_Increase[0].setText("FFFF");
  save("/p.KVR");
  const std::string file = fileText("/p.KVR");
  EXPECT_TRUE(
      file.starts_with("VER: 1.2\r\nMCU_Type: Cedar-H10R\r\nFile_Name: Program File: \r\nFile_Check_Sum: \r\n"
                       "Dtat_File_Name: Data File: \r\nDtat_File_CheckSum: \r\nAuto_Increase_Enable: "
                       "0\r\nAuto_Increase_Address: FFFF\r\n"))
      << file;
  EXPECT_NE(file.find("\r\nDouble_speed_YES: False\r\nDouble_speed_NO: True\r\nHalf_Gain_YES: "), std::string::npos)
      << file;
  EXPECT_TRUE(file.ends_with("\r\nbuffer_check_sum:  3\r\nEND\r\n0102")) << file;
  EXPECT_EQ(room.panel.texBatchFileName.text(), "/p.KVR");
}

TEST_F(ProjectRoomTest, SavesNothingWithoutAnImageOrANameAndKeepsTheOldFileWhenTheDiskIsFull) {
  select("Ivy-HF0S");
  save("/p.KVR");
  EXPECT_EQ(lastMessage(), "Please open code file.");
  dialogs.paths.clear();
  images.state.imageValid = true;
  room.panel.texBatchFileName.setText("/old.KVR");
  room.panel.comSaveBatchFile.press();
  EXPECT_TRUE(files.files.empty());
  EXPECT_EQ(room.panel.texBatchFileName.text(), "/old.KVR");
  save("/p.KVR");
  const std::string file = fileText("/p.KVR");
  place(images.state.CodeBuffer, {9, 9, 9});
  files.diskFull = true;
  save("/p.KVR");
  EXPECT_EQ(fileText("/p.KVR"), file);
  EXPECT_EQ(lastMessage(), "The project file was not saved: disk full");
}

TEST_F(ProjectRoomTest, LocksTheOptionsUntilTheyAreUnlocked) {
  open("VER: 1.3\r\nMCU_Type: Ivy-HF0S\r\nbuffer_check_sum: 255\r\nend\r\nFF");
  EXPECT_TRUE(images.state.imageValid);
  EXPECT_EQ(images.state.CodeBuffer.fileEnd, 0);
  EXPECT_EQ(lock.state(), platform::UiLock::kLocked);
  EXPECT_FALSE(room.panel.comLockOptions.enabled() || images.panel.comLoadFile.enabled());
  lock.toBusy();
  EXPECT_FALSE(room.panel.comOpenBatchFile[0].enabled());
  lock.toFree();
  room.panel.comUnlockOptions.press();
  EXPECT_TRUE(images.panel.comLoadFile.enabled() && images.state.imageValid);
  room.panel.comLockOptions.press();
  EXPECT_EQ(lock.state(), platform::UiLock::kLocked);
}

TEST_F(ProjectRoomTest, ChangesNothingForAFileThatCannotBeOpened) {
  std::mt19937 random(1);
  select("Ivy-HF0S");
  fill(random, 700);
  const std::string before = look();
  const Bytes code = kept(images.state.CodeBuffer);
  const std::pair<const char*, const char*> cases[] = {
      {"VER: 1.1\r\nMCU_Type: Ivy-HF0S\r\nEND\r\n00",
       "Sorry, the current program does not support Ver1.1 project files."},
      {"VER: 1.2\r\nMCU_Type: Zebra-H04\r\nEND\r\n00", "Can not find the MCU type: Zebra-H04"},
      {"VER: 1.2\r\nFile_Name: x\r\nEND\r\n00", "Can not find the MCU type: VER"},
      {"VER: 1.2\r\nMCU_Type: Ivy-H20S\r\nbuffer_check_sum: 0\r\n00", "The check sum of code file is incorrect."},
      {"MCU type: Zebra-H04\r\nEND\r\n00", "Can not find the MCU type: Zebra-H04"},
      {"", "Can not find the MCU type: "},
  };
  for (const auto& [text, message] : cases) {
    SCOPED_TRACE(text);
    dialogs.shown.clear();
    EXPECT_FALSE(open(text));
    EXPECT_EQ(std::pair(dialogs.shown.size(), lastMessage()), std::pair(std::size_t{1}, std::string(message)));
    EXPECT_EQ(look(), before);
    EXPECT_EQ(kept(images.state.CodeBuffer), code);
    EXPECT_EQ(lock.state(), platform::UiLock::kFree);
  }
  EXPECT_FALSE(room.openProject("/absent.KVR"));
  EXPECT_EQ(lastMessage(), "The project file cannot be read: /absent.KVR");
  const auto running = activity.begin();
  open("VER: 1.2\r\nMCU_Type: Ivy-H20S\r\nbuffer_check_sum: 1\r\nEND\r\n01");
  EXPECT_EQ(look(), before);
}

TEST_F(ProjectRoomTest, ADialogHoldsTheGuardUntilItIsAnswered) {
  dialogs.thinking = platform::Millis(1000);
  bool held = false;
  platform::Timer probe(loop, [&] { held = activity.busy(); });
  probe.start(platform::Millis(500));
  room.panel.comOpenBatchFile[0].press();
  EXPECT_TRUE(held);
  EXPECT_FALSE(activity.busy());
}

TEST_F(ProjectRoomTest, LeavesAnImageInvalidWhoseSumDiffers) {
  select("Gum-H04");
  images.state.imageValid = true;
  EXPECT_FALSE(
      open("VER: 1.2\r\nMCU_Type: Ivy-HF0S\r\nPower_On_Run_WDT_YES: True\r\nbuffer_check_sum: 4\r\nEND\r\n0102"));
  EXPECT_EQ(lastMessage(), "The check sum of code file is incorrect.");
  EXPECT_TRUE(optionPanel.comWDT_Prescalar[0].enabled());  // the watchdog starts, so its prescaler matters
  EXPECT_FALSE(images.state.imageValid);
  EXPECT_EQ(images.state.CodeBuffer.at(1), 2);
  EXPECT_EQ(lock.state(), platform::UiLock::kFree);
  EXPECT_TRUE(open(
      "VER: 1.2\r\nMCU_Type: Ivy-H20S\r\nbuffer_check_sum: 3\r\nEND\r\n0102\r\n\r\ndata_buffer_check_sum: 9\r\n08"));
  EXPECT_EQ(lastMessage(), "The check sum of EEPROM file is incorrect.");
  EXPECT_TRUE(images.state.imageValid);
  EXPECT_FALSE(images.state.EepromBuffer.loaded);
  EXPECT_EQ(lock.state(), platform::UiLock::kLocked);
}

TEST_F(ProjectRoomTest, PutsTheNextNumberIntoTheImageAndWarns) {
  images.panel.cekReloadFile.setValue(true);
  open(
      "VER: 1.2\r\nMCU_Type: Ivy-HF0S\r\nAuto_Increase_Enable: 1\r\nAuto_Increase_Address: 3\r\nAuto_Increase_Bytes: "
      "2\r\n"
      "Auto_Increase_Next: 4660\r\nAuto_Increase: 1\r\nAuto_Increase_HEX: True\r\nData_Increase_Enable: 0\r\n"
      "buffer_check_sum: 10\r\nEND\r\n01020304");
  EXPECT_EQ(kept(images.state.CodeBuffer), (Bytes{1, 2, 0x12, 0x34}));
  EXPECT_TRUE(images.slots.code.counter.armed);
  EXPECT_EQ(lastMessage(),
            "The project file has atomatic increment function. \n"
            "Please check the next value whether it is correct or not(10 base).");
  EXPECT_FALSE(images.panel.cekReloadFile.value());
}

TEST_F(ProjectRoomTest, TheImagesHaveTheSumsThatTheirBoxesShow) {
  const auto shown = [](const platform::TextBox& box) { return platform::hexOf(box.trimmed()); };
  open(
      "VER: 1.2\r\nMCU_Type: Ivy-HF0S\r\nFile_Check_Sum: 0ABCDEFH       \r\nDtat_File_CheckSum: 0012345H\r\n"
      "buffer_check_sum: 3\r\nEND\r\n0102\r\nData_File_Begin:\r\ndata_buffer_check_sum: 8\r\n08\r\nData_File_End");
  EXPECT_EQ(images.state.CodeBuffer.sum, 0xABCDEF);
  EXPECT_EQ(images.state.EepromBuffer.sum, 0x12345);
  EXPECT_EQ(shown(images.panel.txtFileCheckSum), 0xABCDEFU);
  open("VER: 1.2\r\nMCU_Type: Ivy-HF0S\r\nbuffer_check_sum: 510\r\nEND\r\nFFFF");
  EXPECT_EQ(images.state.CodeBuffer.sum, 510) << "a project that states none";
}

TEST_F(ProjectRoomTest, TellsWhenTheDataImageThatItsHeaderNamesIsMissing) {
  const std::string text =
      "VER: 1.2\r\nMCU_Type: Ivy-HF0S\r\nDtat_File_Name: Data File: /e.bin\r\nDtat_File_CheckSum: 0000008H\r\n"
      "buffer_check_sum: 3\r\nEND\r\n0102\r\n";
  open(text + "Data_File_Begin:\r\ndata_buffer_check_sum: 8\r\n08\r\nData_File_End");
  EXPECT_TRUE(dialogs.shown.empty());
  open(text);
  EXPECT_EQ(lastMessage(), "The project file names an EEPROM file, but does not hold its data.");
  EXPECT_TRUE(images.state.imageValid);
}

TEST_F(ProjectRoomTest, ANameWithBlanksAroundItReplacesNoFileUnasked) {
  select("Ivy-HF0S");
  images.state.imageValid = true;
  put("precious");
  save(" /p.KVR ");
  EXPECT_EQ(fileText("/p.KVR"), "precious");
  EXPECT_EQ(dialogs.shown.back().kind, "yesno");
  dialogs.yesNo = {true};
  save("/p.KVR ");
  EXPECT_NE(fileText("/p.KVR"), "precious");
}

TEST_F(ProjectRoomTest, OpensFilesOfTheOlderFormat) {
  open(
      "MCU type: Cedar-H10R\r\nfile name: x\r\nOption0(0): True\r\nOption0(1): False\r\nAuto_Increase_Check: 0\r\n"
      "buffer_check_sum: 3\r\nEND\r\n0102");
  EXPECT_EQ(dialogs.shown.at(0).text,
            "What you are using is an old project file, carefully check each options please.");
  EXPECT_TRUE(options.chosen("Double_speed_YES"));
  EXPECT_TRUE(images.state.imageValid);
  EXPECT_EQ(model.record.name, "Cedar-H10R");
}

}  // namespace
}  // namespace kvr::project
