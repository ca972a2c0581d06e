#include "platform/virtual/virtual_loop.h"
#include "platform/virtual/virtual_world.h"
#include "tests/platform/loop_contract.h"
#include "tests/platform/storage_contract.h"

namespace kvr::platform {
namespace {

struct VirtualTime {
  EventLoop& loop() { return loop_; }
  VirtualLoop loop_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, LoopContract, VirtualTime);

struct Memory {
  SettingsStore& store() { return store_; }
  std::unique_ptr<SettingsStore> window() const { return std::make_unique<MemoryStore>(store_.disk()); }
  FileSystem& files() { return files_; }
  std::string folder() const { return "/program"; }
  MemoryStore store_;
  MemoryFiles files_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, StorageContract, Memory);

TEST(VirtualLoop, AWaitForWhatCanNeverComeFails) {
  VirtualLoop loop;
  EXPECT_THROW(loop.runOnce(), StalledWorld);
  EXPECT_FALSE(loop.runUntil([] { return false; }, Millis(1000)));
}

}  // namespace
}  // namespace kvr::platform
