// Which controls take input while a run is on or the options are locked, on the whole form; and what is dropped onto
// it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

using options::UiLock;

struct Named {
  const char* name;
  int index = platform::Control::kSingle;
};

// Only in the free state.
const std::vector<Named> kOnlyFree = {{"txtDevice"},
                                      {"txtAP_FileStart"},
                                      {"txtFileCheckSum"},
                                      {"cheClearAP_Buffer"},
                                      {"cheClearDataBuffer"},
                                      {"comLoadFile"},
                                      {"Command3"},
                                      {"comTJXZ"},
                                      {"comDebugContinue", 1},
                                      {"comDebugContinue", 2},
                                      {"comOpenCOM", 0},
                                      {"comOpenCOM", 1},
                                      {"comOpenCOM", 2},
                                      {"comDebugClear", 1},
                                      {"comDebugClear", 2},
                                      {"comLockOptions"},
                                      {"comMastWindow"},
                                      {"comDebugSend"},
                                      {"comAutoSend"},
                                      {"comSendUserCode"},
                                      {"comStoreFile"},
                                      {"comLoadDataFile"},
                                      {"txtDataFileStart"},
                                      {"txtDataFileCheckSum"},
                                      {"cheData_Auto_Increase"},
                                      {"texData_Auto_Increase", 0},
                                      {"texData_Auto_Increase", 3},
                                      {"optData_Auto_Increase", 0},
                                      {"optData_Auto_Increase", 2},
                                      {"cheAuto_Increase"},
                                      {"texAuto_Increase", 0},
                                      {"optAuto_Increase", 1}};
// While no run is on, locked or not.
const std::vector<Named> kNoRun = {{"comDownload", 0},   {"comDownload", 1},      {"comDebugHelp", 1},
                                   {"comDebugHelp", 2},  {"comOpenBatchFile", 0}, {"comSaveBatchFile"},
                                   {"comUnlockOptions"}, {"com_Demo_DownLoad"},   {"com_Demo_Re_DownLoad"},
                                   {"comReadChipLock"}};
const std::vector<Named> kOnlyInARun = {{"comStop_Download"}, {"com_Demo_Stop"}};

void expectAll(const MainForm& form, const std::vector<Named>& controls, bool on) {
  for (const Named& named : controls) {
    const auto* control = form.registry.find(named.name, named.index);
    ASSERT_NE(control, nullptr) << named.name;
    EXPECT_EQ(control->enabled(), on) << named.name << " " << named.index << " in state " << form.lock.state();
  }
}

void expectLock(const MainForm& form) {
  expectAll(form, kOnlyFree, form.lock.free());
  expectAll(form, kNoRun, !form.lock.busy());
  expectAll(form, kOnlyInARun, form.lock.busy());
}

TEST(Lock, LeavesInEveryStateTheControlsOfThatStateForModelsWithAndWithoutOptions) {
  support::FormBench bench;
  auto& form = bench.form;
  std::string plain;
  std::string fixed;
  for (const auto& node : form.main.TreeViewDevice.nodes()) {
    const auto* record = catalogue::findByName(node.key);
    if (!record || !catalogue::hasDataFile(*record) || record->dataEnd - record->dataStart < 100) continue;
    std::string& first = record->noOptions ? fixed : plain;
    if (first.empty()) first = node.key;
  }
  ASSERT_FALSE(plain.empty() || fixed.empty());
  for (const std::string& model : {plain, fixed}) {
    form.main.TreeViewDevice.userPick(model);
    for (const int state : {UiLock::kFree, UiLock::kBusy, UiLock::kLocked, UiLock::kBusyLocked, UiLock::kFree}) {
      SCOPED_TRACE(model);
      form.lock.set(state);
      expectLock(form);
    }
  }
}

TEST(Lock, HoldsTheDataFileControlsOffWhenALockedFormOpensAProjectThatFails) {
  support::FormBench bench;
  auto& form = bench.form;
  bench.select("Ivy-HF0S");
  form.lock.set(UiLock::kLocked);
  std::string model;
  for (const auto& node : form.main.TreeViewDevice.nodes())
    if (const auto* record = catalogue::findByName(node.key); record && catalogue::hasDataFile(*record))
      model = node.key;
  ASSERT_FALSE(model.empty());
  const std::string text = "VER: 1.2\r\nMCU_Type: " + model + "\r\nbuffer_check_sum:  1\r\nEND\r\n0000";
  bench.files.put("/bad.KVR", platform::Bytes(text.begin(), text.end()));
  form.project.openProject("/bad.KVR");
  EXPECT_EQ(form.model.name(), model);
  EXPECT_EQ(form.lock.state(), UiLock::kLocked);
  expectLock(form);
}

}  // namespace
}  // namespace kvr::shell
