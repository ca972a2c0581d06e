// Which controls take input while a run is on or the options are locked, on the whole form; and what is dropped onto
// it.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

using platform::UiLock;

// Only in the free state.
const std::string kOnlyFree =
    "txtDevice txtAP_FileStart txtFileCheckSum cheClearAP_Buffer cheClearDataBuffer comLoadFile Command3 comTJXZ "
    "comDebugContinue comOpenCOM comDebugClear comLockOptions comMastWindow comDebugSend comAutoSend comSendUserCode "
    "comStoreFile comLoadDataFile txtDataFileStart txtDataFileCheckSum cheData_Auto_Increase texData_Auto_Increase "
    "optData_Auto_Increase cheAuto_Increase texAuto_Increase optAuto_Increase";
// While no run is on, locked or not.
const std::string kNoRun =
    "comDownload comDebugHelp comOpenBatchFile comSaveBatchFile comUnlockOptions com_Demo_DownLoad "
    "com_Demo_Re_DownLoad comReadChipLock";
const std::string kOnlyInARun = "comStop_Download com_Demo_Stop";

// The first of the terminal's buttons in each of its arrays takes input in every state.
bool staysOn(const platform::Control& control) {
  return control.index() == 0 && control.name().starts_with("comDebug");
}

void expectAll(const MainForm& form, const std::string& names, bool on) {
  std::istringstream list(names);
  for (std::string name; list >> name;) {
    int found = 0;
    for (const auto* control : form.registry.all())
      if (control->name() == name) {
        ++found;
        EXPECT_EQ(control->enabled(), on || staysOn(*control))
            << name << " " << control->index() << " in state " << form.lock.state();
      }
    EXPECT_GT(found, 0) << name;
  }
}

void expectLock(const MainForm& form) {
  expectAll(form, kOnlyFree, form.lock.free());
  expectAll(form, kNoRun, !form.lock.busy());
  expectAll(form, kOnlyInARun, form.lock.busy());
}

// The last model of the tree with a data file of some size; with or without options.
std::string modelWithData(const MainForm& form, bool noOptions) {
  std::string model;
  for (const auto& node : form.main.TreeViewDevice.nodes())
    if (const auto* record = catalogue::findByName(node.key); record && catalogue::hasDataFile(*record) &&
                                                              record->noOptions == noOptions &&
                                                              record->dataEnd - record->dataStart >= 1000)
      model = node.key;
  EXPECT_NE(model, "");
  return model;
}

TEST(Lock, LeavesInEveryStateTheControlsOfThatStateForModelsWithAndWithoutOptions) {
  support::FormBench bench;
  auto& form = bench.form;
  for (const bool noOptions : {false, true}) {
    const std::string model = modelWithData(form, noOptions);
    form.main.TreeViewDevice.userPick(model);
    for (const int state : {platform::UiLock::kFree, platform::UiLock::kBusy, platform::UiLock::kLocked,
                            platform::UiLock::kBusyLocked, platform::UiLock::kFree}) {
      SCOPED_TRACE(model);
      form.lock.set(state);
      expectLock(form);
    }
  }
  form.main.TreeViewDevice.userPick("Ivy-H20X");
  EXPECT_FALSE(form.images.panel.comLoadDataFile.enabled()) << "it takes no data file";
}

TEST(Drop, GoesToTheBufferThatIsShownAndAProjectComesThroughTheLock) {
  support::FormBench bench;
  auto& form = bench.form;
  bench.select(modelWithData(form, false));
  bench.files.put("/data.bin", platform::Bytes(600, 0x5A));
  bench.files.put("/code.bin", platform::Bytes(600, 0xC5));
  form.main.TabStrip2.select("EEPROM_File");
  form.openDropped("/data.bin");
  form.main.TabStrip2.select("Debug_COM");
  form.openDropped("/code.bin");
  EXPECT_EQ(form.images.state.EepromBuffer.at(599), 0x5A);
  EXPECT_TRUE(form.images.state.EepromBuffer.loaded);
  EXPECT_EQ(form.images.state.CodeBuffer.at(599), 0xC5);

  form.lock.set(platform::UiLock::kLocked);
  bench.files.put("/other.bin", platform::Bytes(600, 0x11));
  form.openDropped("/other.bin");
  EXPECT_EQ(form.images.state.CodeBuffer.at(599), 0xC5);
  bench.files.put("/batch.KVR", "VER: 1.2\r\nMCU_Type: Cedar-H10R\r\nbuffer_check_sum: 3\r\nEND\r\n0102");
  form.openDropped("/batch.KVR");
  EXPECT_EQ(form.model.name(), "Cedar-H10R");
  EXPECT_EQ(form.main.TabStrip2.selectedKey(), "Batch_quantity");
  EXPECT_EQ(form.images.state.CodeBuffer.at(1), 2);
  bench.loop.runFor(platform::Millis(1000));
  EXPECT_NE(bench.store.get("Settings", "DeviceProducts"), "Cedar-H10R") << "it has no node to start with";
}

}  // namespace
}  // namespace kvr::shell
