// The parts of a board's memory image as values: limit and serial values.
#include <gtest/gtest.h>

#include "offline/download_limit.h"
#include "offline/increment_blocks.h"
#include "tests/offline/offline_bench.h"

namespace {

using namespace kvr::offline;

TEST(DownloadLimit, IsRefusedOutsideOneToAMillion) {
  for (const auto& [text, chips] : {std::pair(" 250", 250), {"0.6", 1}, {"2.5", 2}, {"1000000", 1000000}}) {
    EXPECT_EQ(readDownloadLimit(text).chips, chips) << text;
    EXPECT_EQ(readDownloadLimit(text).refusal, "") << text;
  }
  for (const char* text : {"0.5", "", "-7", "many"})
    EXPECT_EQ(readDownloadLimit(text).refusal, "The number of MCU is too small.") << text;
  for (const char* text : {"1000001", "9e99"})
    EXPECT_EQ(readDownloadLimit(text).refusal,
              "The number of MCU should be less than or equal to 1000000 on an off-line progam board.");
}

TEST(IncrementBlock, SplitsAValueThatCrossesAPage) {
  struct {
    int last;
    int length;
    int base;
    Bytes head;  // offsets 0 to 10
  } const rows[] = {
      {0x0081, 4, 0, {1, 0, 0, 0x7E, 2, 0, 0, 0x80, 2, 3, 1}},
      {0x007F, 2, 0, {1, 0, 0, 0x7E, 2, 0, 0, 0x7F, 0, 3, 1}},
      {0x0080, 1, 0, {1, 0, 0, 0x80, 1, 0, 0, 0x80, 0, 3, 1}},
      {0xFFFF, 8, 0, {1, 0, 0xFF, 0xF8, 8, 0, 0xFF, 0xFF, 0, 3, 1}},
      {0x0101, 4, 0xF000, {1, 0, 0xF0, 0xFE, 2, 0, 0xF1, 0x00, 2, 3, 1}},
      {0x0001, 4, 0, {1, 0xFF, 0xFF, 0xFE, 2, 0, 0, 0x00, 2, 3, 1}},
  };
  for (const auto& row : rows) {
    const IncrementField field{
        .enabled = true, .last = row.last, .length = row.length, .next = "7", .step = 259, .radix = 1};
    const IncrementBlock block = makeIncrementBlock(field, row.base);
    EXPECT_EQ(Bytes(block.bytes.begin(), block.bytes.begin() + 11), row.head) << row.last;
    EXPECT_EQ(block.start, row.last - row.length + 1 + row.base);
  }
  const IncrementBlock off = makeIncrementBlock({.enabled = false, .last = 5, .length = 2, .step = 1, .radix = 2}, 0);
  EXPECT_EQ(off.bytes[0], 0);
  EXPECT_EQ(off.bytes[10], 0xFF) << "a value that is off has no form";
}

TEST(IncrementBlock, RefusesABatchThatOutgrowsItsValues) {
  const auto overflows = [](const char* next, std::int64_t step, std::int64_t limit) {
    return incrementOverflows({.enabled = true, .next = next, .step = step}, limit);
  };
  EXPECT_FALSE(overflows("2147483647", 1, 1));
  EXPECT_TRUE(overflows("2147483647", 1, 2));
  EXPECT_TRUE(overflows("2147483647", 2, 1));
  EXPECT_FALSE(overflows("0", 2147, 1000000));
  EXPECT_TRUE(overflows("0", 2148, 1000000));
  EXPECT_TRUE(overflows("0", 2147483647, 1000000));
  EXPECT_EQ(nextValueBytes({.next = "305419896"}), (std::array<std::uint8_t, 4>{0x12, 0x34, 0x56, 0x78}));
  (void)nextValueBytes({.next = "-1e300"});  // must not trap
}

}  // namespace
