// Inputs that a fuzz run found worth keeping: each makes a reader take a way that the others don't.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/fuzz/targets.h"

namespace kvr::fuzz {
namespace {

TEST(Corpus, OfEveryWayInIsReadRight) {
  for (const Target& target : kTargets) {
    int files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(KVR_SOURCE_DIR "/tests/fuzz/corpus/" + std::string(target.name))) {
      std::ifstream file(entry.path(), std::ios::binary);
      const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
      EXPECT_EQ(target.faultOf(bytes), "") << entry.path();
      ++files;
    }
    EXPECT_GE(files, 5) << target.name;
  }
}

}  // namespace
}  // namespace kvr::fuzz
