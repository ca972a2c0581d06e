// What every settings store and every file system promise; run against each world. A world type has `SettingsStore&
// store()`, `std::unique_ptr<SettingsStore> window()`, the store of another window on the same settings, `FileSystem&
// files()` and `std::string folder()`, a folder that can be written.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/file_system.h"
#include "platform/settings_store.h"

namespace kvr::platform {

template <class World>
class StorageContract : public ::testing::Test {
 protected:
  World world;
};
TYPED_TEST_SUITE_P(StorageContract);

TYPED_TEST_P(StorageContract, AStoreKeepsEveryTextAsItStands) {
  SettingsStore& store = this->world.store();
  EXPECT_FALSE(store.get("Settings", "texSendText"));
  const std::string texts[] = {"",       "0",           " two  blanks ", "a,b;c=d \"q\" %41 @x \\",
                               "安全锁", "@Variant(x)", "line\nline",    "#1;"};
  for (const auto& text : texts) {
    store.set("Settings", "texSendText", text);
    store.set("Settings", "安全锁", text);
    ASSERT_TRUE(store.flush());
    EXPECT_EQ(store.get("Settings", "texSendText"), text);
    EXPECT_EQ(store.getOr("Settings", "安全锁", "lost"), text);
  }
  EXPECT_FALSE(store.get("Auto_Increase", "texSendText"));
}

TYPED_TEST_P(StorageContract, OfTwoWindowsEachWritesOnlyWhatItHasSetIntoTheFileAsItIsNow) {
  SettingsStore& first = this->world.store();
  first.set("Auto_Increase", "next_value", "0007");
  ASSERT_TRUE(first.flush());
  const auto second = this->world.window();
  ASSERT_EQ(second->get("Auto_Increase", "next_value"), "0007");
  second->set("Auto_Increase", "next_value", "0000");
  second->set("Settings", "COM_port", "2");
  ASSERT_TRUE(second->flush());
  EXPECT_EQ(first.get("Auto_Increase", "next_value"), "0007") << "as this window last saw it";
  first.set("Auto_Increase", "next_value", "0007");
  ASSERT_TRUE(first.flush());
  EXPECT_EQ(this->world.window()->get("Auto_Increase", "next_value"), "0007");
  EXPECT_EQ(this->world.window()->get("Settings", "COM_port"), "2");
  EXPECT_EQ(second->fresh("Auto_Increase", "next_value"), "0007");
  EXPECT_EQ(second->get("Auto_Increase", "next_value"), "0007");
  second->set("Auto_Increase", "next_value", "0009");
  EXPECT_EQ(second->fresh("Auto_Increase", "next_value"), "0007") << "what is only set here is not in the file";
  EXPECT_EQ(second->get("Auto_Increase", "next_value"), "0009");
}

TYPED_TEST_P(StorageContract, OneWindowAloneHoldsAClaim) {
  SettingsStore& first = this->world.store();
  const auto second = this->world.window();
  auto held = first.claim("Auto_Increase");
  ASSERT_TRUE(held);
  EXPECT_FALSE(second->claim("Auto_Increase"));
  EXPECT_FALSE(first.claim("Auto_Increase"));
  EXPECT_TRUE(second->claim("Data_Auto_Increase"));
  held.reset();
  EXPECT_TRUE(second->claim("Auto_Increase"));
}

TYPED_TEST_P(StorageContract, AFileIsReplacedWholeAndReadBack) {
  FileSystem& files = this->world.files();
  const std::string path = this->world.folder() + "/image.bin";
  EXPECT_FALSE(files.read(path));
  EXPECT_FALSE(files.stamp(path));
  const Bytes first{0, 10, 13, 26, 255};
  ASSERT_TRUE(files.replace(path, first));
  const auto stamp = files.stamp(path);
  EXPECT_EQ(files.read(path), first);
  EXPECT_EQ(files.read(path, 2), (Bytes{0, 10}));
  ASSERT_TRUE(files.replace(path, Bytes{5, 4, 3, 2, 1}));
  EXPECT_NE(files.stamp(path), stamp);
  EXPECT_EQ(files.changedAt(path).size(), 19u);
  EXPECT_TRUE(files.fileExists(path));
  EXPECT_FALSE(files.fileExists(this->world.folder()));
  EXPECT_TRUE(files.folderExists(this->world.folder()));
  EXPECT_FALSE(files.read(this->world.folder()));
  EXPECT_EQ(files.absolute(path), path);
  EXPECT_TRUE(files.absolute("x.bin").starts_with('/') && files.absolute("x.bin").ends_with("/x.bin"));
}

TYPED_TEST_P(StorageContract, ALineIsAppendedOnALineOfItsOwnAfterTheHeaderOfAFileThatWasEmpty) {
  FileSystem& files = this->world.files();
  const std::string path = this->world.folder() + "/log.csv";
  const auto text = [&] {
    const Bytes bytes = files.read(path).value_or(Bytes());
    return std::string(bytes.begin(), bytes.end());
  };
  ASSERT_TRUE(files.appendLine(path, "1\r\n", "no\r\n"));
  ASSERT_TRUE(files.appendLine(path, "2\r\n", "no\r\n"));
  EXPECT_EQ(text(), "no\r\n1\r\n2\r\n");
  ASSERT_TRUE(files.replace(path, Bytes{}));
  ASSERT_TRUE(files.appendLine(path, "3\r\n", "no\r\n"));
  EXPECT_EQ(text(), "no\r\n3\r\n");
  ASSERT_TRUE(files.replace(path, Bytes{'h', 'a', 'l', 'f'}));
  ASSERT_TRUE(files.appendLine(path, "4\r\n", "no\r\n"));
  EXPECT_EQ(text(), "half\r\n4\r\n");
}

REGISTER_TYPED_TEST_SUITE_P(StorageContract, AStoreKeepsEveryTextAsItStands,
                            OfTwoWindowsEachWritesOnlyWhatItHasSetIntoTheFileAsItIsNow, OneWindowAloneHoldsAClaim,
                            AFileIsReplacedWholeAndReadBack,
                            ALineIsAppendedOnALineOfItsOwnAfterTheHeaderOfAFileThatWasEmpty);

}  // namespace kvr::platform
