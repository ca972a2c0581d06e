// Inputs that a fuzz run found worth keeping: each one makes a parser take a way that the others don't.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kvr::support {

// Every file of tests/<room>/corpus. `faultOf` says what is wrong with the way in which it was read.
inline void replayCorpus(const std::string& room,
                         const std::function<std::string(const std::vector<std::uint8_t>&)>& faultOf) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KVR_SOURCE_DIR "/tests/" + room + "/corpus")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(faultOf(bytes), "") << entry.path();
    ++files;
  }
  EXPECT_GE(files, 20);
}

}  // namespace kvr::support
