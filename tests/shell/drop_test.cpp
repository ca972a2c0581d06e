// A file that is dropped onto the window or handed over by the desktop.
#include <gtest/gtest.h>

#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

using options::UiLock;

TEST(Drop, GoesToTheBufferThatIsShownAndAProjectComesThroughTheLock) {
  support::FormBench bench;
  auto& form = bench.form;
  std::string model;
  for (const auto& node : form.main.TreeViewDevice.nodes())
    if (const auto* record = catalogue::findByName(node.key);
        record && catalogue::hasDataFile(*record) && record->dataEnd - record->dataStart >= 1000)
      model = node.key;
  bench.select(model);
  bench.files.put("/data.bin", platform::Bytes(600, 0x5A));
  bench.files.put("/code.bin", platform::Bytes(600, 0xC5));
  form.main.TabStrip2.select("EEPROM_File");
  form.openDropped("/data.bin");
  form.main.TabStrip2.select("Debug_COM");
  form.openDropped("/code.bin");
  EXPECT_EQ(form.images.state.EepromBuffer.at(599), 0x5A);
  EXPECT_TRUE(form.images.state.EepromBuffer.loaded);
  EXPECT_EQ(form.images.state.CodeBuffer.at(599), 0xC5);

  form.lock.set(UiLock::kLocked);
  for (const char* page : {"tab_file", "EEPROM_File"}) {
    form.main.TabStrip2.select(page);
    bench.files.put("/other.bin", platform::Bytes(600, 0x11));
    form.openDropped("/other.bin");
  }
  EXPECT_EQ(form.images.state.EepromBuffer.at(599), 0x5A);
  EXPECT_EQ(form.images.state.CodeBuffer.at(599), 0xC5);
  const std::string text = "VER: 1.2\r\nMCU_Type: Hazel-H04\r\nbuffer_check_sum:  3\r\nEND\r\n0102";
  bench.files.put("/batch.KVR", platform::Bytes(text.begin(), text.end()));
  form.openDropped("/batch.KVR");
  EXPECT_EQ(form.model.name(), "Hazel-H04");
  EXPECT_EQ(form.main.TabStrip2.selectedKey(), "Batch_quantity");
  EXPECT_EQ(form.images.state.CodeBuffer.at(1), 2);
}

}  // namespace
}  // namespace kvr::shell
