// What every settings store and every file system promise; run against each world. A world type has `SettingsStore&
// store()`, `FileSystem& files()` and `std::string folder()`, a folder that can be written.
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
  ASSERT_TRUE(files.append(path, Bytes{9}));
  EXPECT_EQ(files.read(path), (Bytes{5, 4, 3, 2, 1, 9}));
  EXPECT_EQ(files.changedAt(path).size(), 19u);
  EXPECT_TRUE(files.fileExists(path));
  EXPECT_FALSE(files.fileExists(this->world.folder()));
  EXPECT_TRUE(files.folderExists(this->world.folder()));
  EXPECT_FALSE(files.read(this->world.folder()));
}

REGISTER_TYPED_TEST_SUITE_P(StorageContract, AStoreKeepsEveryTextAsItStands, AFileIsReplacedWholeAndReadBack);

}  // namespace kvr::platform
