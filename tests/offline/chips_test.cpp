// From the loaded files to chips: the session writes a simulated board, and the board programs chips from what it
// holds, without a PC.
#include <gtest/gtest.h>

#include <map>

#include "tests/offline/offline_bench.h"
#include "tests/support/models.h"

namespace {

using namespace kvr::offline;
using kvr::catalogue::Family;
using kvr::catalogue::McuRecord;

bool served(const McuRecord& record) {
  return traitsOf(record).offlineBoard && record.listed;
}

int roomOnBoard(const McuRecord& record) {
  const std::map<int, int> kBlocks = {{5, 56},   {6, 10},  {7, 122}, {8, 26}, {9, 10},
                                      {10, 122}, {15, 26}, {16, 26}, {17, 26}};
  const auto found = kBlocks.find(static_cast<int>(record.family));
  if (found == kBlocks.end()) return 65536;
  const bool top = record.topBlockFree;
  return (found->second + (top ? (found->first == 5 ? 4 : 2) : 0)) * 512;
}

void putNumber(Bytes& memory, std::size_t last, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) memory[last - i] = static_cast<std::uint8_t>(value >> (8 * i));
}

TEST(Board, ProgramsThreeChipsOfEachFamilyAndNoFourth) {
  for (const McuRecord* record : kvr::support::endsOfEachFamily(served)) {
    SCOPED_TRACE(testing::Message() << record->name);
    sim::BoardConfig config;
    config.version = 0x16;
    config.secondBank = numberOf(record->family) % 2 == 0;
    OfflineBench bench(config);
    bench.choose(record->name);
    const int room = static_cast<int>(std::min<std::int64_t>(record->apEnd + 1, config.secondBank ? 60000 : 52000));
    bench.loadNoise(room);
    const bool withData = kvr::catalogue::hasDataFile(*record) && record->family <= Family::Larch;
    if (withData) bench.loadEeprom(600);
    bench.countUp("0081", "1000");
    bench.page.txt_download_max.setText("3");
    bench.keepWanted();
    bench.run();
    ASSERT_TRUE(bench.saidOk()) << bench.textMsg.text();
    ASSERT_TRUE(bench.board.violations().empty()) << bench.board.violations().front().text;

    // A data image of 600 bytes begins right after the code, and its last byte is not sent; without one the board takes
    // no less than 1 KB, and of the larger files what the family's boards can hold.
    const std::size_t last = withData
                                 ? static_cast<std::size_t>(record->apEnd) + 599
                                 : static_cast<std::size_t>(std::max(std::min(room, roomOnBoard(*record)), 1024)) - 1;
    Bytes expected(bench.kept.begin(), bench.kept.begin() + static_cast<std::ptrdiff_t>(last) + 1);
    sim::BoardJob job = bench.board.job();
    for (std::uint32_t chip = 0; chip < 3; ++chip) {
      sim::FlashMemory flash(65536, 65536, 17 + chip);
      const sim::BoardRun run = job.programNext(flash);
      ASSERT_TRUE(run.done) << run.why;
      EXPECT_EQ(run.leftOut, 0);
      if (record->family >= Family::Ivy && record->family <= Family::Larch) {
        const auto wanted = bench.wanted();
        EXPECT_TRUE(std::equal(run.options.begin(), run.options.begin() + 4, wanted.begin()));
      }
      putNumber(expected, 0x81, 1000 + 7 * chip);
      EXPECT_TRUE(std::equal(expected.begin(), expected.end(), flash.bytes().begin())) << "chip " << chip;
      EXPECT_FALSE(flash.isWritten(last + 1));
    }
    sim::FlashMemory flash(65536, 65536, 1);
    EXPECT_FALSE(job.programNext(flash).done);
    EXPECT_EQ(job.remaining(), 0);
    bench.board.memory().main[kMainCodeAt + 700] ^= 1;
    bench.board.memory().main[kLimitLowAt] = 1;
    EXPECT_EQ(bench.board.job().programNext(flash).why, "code: CRC of block 5");
    std::string fault;
    const auto header = job.header(fault);
    ASSERT_TRUE(header) << fault;
    EXPECT_EQ(header->model, record->name);
  }
}

TEST(Board, CountsANumberInTheDataMemory) {
  OfflineBench bench;
  bench.choose("Hazel-H04A");
  bench.loadNoise(1000);
  bench.loadEeprom(600);
  bench.countUp("0100", "1000", true);
  bench.page.txt_download_max.setText("2049");
  bench.run();
  ASSERT_TRUE(bench.saidOk()) << bench.textMsg.text();
  EXPECT_EQ(bench.lines("1 byte of the code and data will not be programmed."), 1)
      << "the last code address lies one below the last data byte";
  sim::BoardJob job = bench.board.job();
  const auto dataStart = static_cast<std::size_t>(bench.model.record.dataStart);
  for (std::uint32_t chip = 0; chip < 3; ++chip) {
    sim::FlashMemory flash(65536, 65536, chip);
    ASSERT_TRUE(job.programNext(flash).done);
    Bytes expected(flash.bytes().begin(), flash.bytes().end());
    putNumber(expected, dataStart + 0x100, 1000 + 7 * chip);
    EXPECT_TRUE(std::ranges::equal(expected, flash.bytes()));
  }
  EXPECT_EQ(job.remaining(), 2046);
}

TEST(Board, KeepsTheSerialValuesBytesFromTheImageOn) {
  OfflineBench bench;
  bench.loadNoise(5000);
  bench.countUp("0081", "1000");
  bench.run();
  ASSERT_TRUE(bench.saidOk());
  Bytes expected = bench.code;
  std::fill_n(expected.begin() + 0x7E, 4, std::uint8_t{0xFF});
  const auto now = bench.images.CodeBuffer.bytes();
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), now.begin()));
  EXPECT_TRUE(bench.images.CodeBuffer.changedSinceLoad(0x80));
  EXPECT_FALSE(bench.images.CodeBuffer.changedSinceLoad(0x82));
}

}  // namespace
