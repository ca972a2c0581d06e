#include "images/hex_scan.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "images/file_scan.h"
#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;

constexpr std::int32_t kSize = kCodeBufferSize;

HexScan scan(const std::string& text, std::int32_t offset = 0, std::int32_t limit = 0x10000) {
  return scanHex(Bytes(text.begin(), text.end()), offset, limit, kSize);
}

Bytes dataFile(const std::string& name) {
  std::ifstream file(std::string(KVR_SOURCE_DIR) + "/tests/images/data/" + name, std::ios::binary);
  EXPECT_TRUE(file.good()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

Bytes part(const HexScan& scan, std::int32_t first, std::size_t count) {
  return {scan.layer.bytes.begin() + first, scan.layer.bytes.begin() + first + static_cast<std::ptrdiff_t>(count)};
}

TEST(HexScan, ReadsWhatAnotherToolWrote) {
  const HexScan tool = scanHex(dataFile("records_255.hex"), 0, 0x10000, kSize);
  Bytes payload = dataFile("payload.bin");
  payload.resize(700);
  EXPECT_EQ(part(tool, 0, 700), payload);
  EXPECT_EQ(tool.badSums, 0);
  EXPECT_EQ(tool.extendedRecords, 1) << "an address record is data, and told";
  // A start address, which comes last, lies upon the head.
  const HexScan late = scan(hexRecord(0x20, {7, 8}) + "\n" + hexRecord(0, {9, 9}) + "\n" + hexRecord(0, {1}, 3));
  EXPECT_EQ(part(late, 0, 2), (Bytes{1, 9}));
  EXPECT_EQ(part(late, 0x20, 2), (Bytes{7, 8}));
  EXPECT_EQ(late.overlappingBytes, 1);
}

TEST(HexScan, EndsLinesWithAnyLineEndAndAtTheEndRecord) {
  for (const auto* end : {"\n", "\r\n", "\r"}) {
    const HexScan result = scan(hexRecord(0, {5}) + end + "a comment" + end + end + hexRecord(1, {6}) + end +
                                kEndRecord + end + hexRecord(2, {7}) + end);
    EXPECT_EQ(part(result, 0, 3), (Bytes{5, 6, 0})) << "nothing after the end record is read";
    EXPECT_TRUE(result.endRecord);
  }
  EXPECT_FALSE(scan(hexRecord(0, {5})).endRecord);
  EXPECT_EQ(scan("\xEF\xBB\xBF" + hexRecord(0, {5})).records, 1) << "an editor's mark must not hide the first record";
  EXPECT_EQ(scan(hexRecord(0, {5}) + "  \n").layer.written[1], 0) << "blanks after a record are no data";
}

TEST(HexScan, ReadsBrokenLinesByTheirPairs) {
  const struct {
    const char* line;
    Bytes read;  // at 10
    int badSums;
  } cases[] = {
      {":020010001xEE01", {0, 0xEE}, 1},  // a bad digit makes its pair 0; the sum then fails
      // 11 digits after the colon: half of that less two is 3.5, to the even 4; the sum is the half pair, which is 0.
      {":02001000AAB", {0xAA, 0}, 1},
      {":01001000AA455", {0xAA, 0}, 0},   // 13 digits: 4.5 goes to 4; the odd digit after the sum counts nowhere
      {":FF0010000102EE", {1, 2, 0}, 0},  // the count of a line is its length, not its first pair
  };
  for (const auto& c : cases) {
    const HexScan result = scan(std::string(c.line) + "\n");
    EXPECT_EQ(part(result, 0x10, c.read.size()), c.read) << c.line;
    EXPECT_EQ(result.badSums, c.badSums) << c.line;
  }
  for (const auto* line : {":", ":00", ":000", ":0000000", ":000000010"})
    EXPECT_EQ(scan(std::string(line) + "\n" + hexRecord(1, {7})).layer.bytes[0], 0) << line;
  const HexScan result = scan(":00000000" + std::string(600, '1') + "\n");
  EXPECT_EQ(result.maxAddr, 256) << "pairs past the 261st are not stored";
  EXPECT_EQ(result.layer.written[257], 0);
}

TEST(FileScan, KnowsHexByNameOrByThreeLines) {
  const struct {
    const char *name, *text;
    FormatChoice choice;
  } cases[] = {
      {"x.hex.txt", "binary", {FileFormat::Hex, true}},
      {"X.HeX", "", {FileFormat::Hex, true}},
      {"x.bin", ":1\r\n:2\r\n:3\r\nrest", {FileFormat::Hex, false}},
      {"x.bin", ":1\n:2", {FileFormat::Hex, false}},
      {"x.bin", ":1\r:2\rx", {FileFormat::Binary, false}},
      {"x.bin", "1\n:2\n:3", {FileFormat::Binary, true}},
      {"x.bin", "", {FileFormat::Binary, true}},
      {"/x/a.hex.d/fw.bin", "\x02", {FileFormat::Binary, true}},  // a folder is no file
      {"fw.hex.bin", "\x02", {FileFormat::Binary, true}},
  };
  for (const auto& c : cases) {
    const std::string text = c.text;
    EXPECT_EQ(chooseFormat(c.name, Bytes(text.begin(), text.end())), c.choice) << c.name << text;
  }
  for (const char* path : {"/a/x.kvr", "C:\\a.hex\\x.KVR", "x.kvr.bak"}) EXPECT_TRUE(isProjectPath(path)) << path;
  for (const char* path : {"/my.kvr.d/fw.hex", "C:\\my.kvr\\fw", "fw.kvr.hex"})
    EXPECT_FALSE(isProjectPath(path)) << path;
}

TEST(FileScan, SumsAsThePublishedCheckValueSays) {
  EXPECT_EQ(crc32(Bytes{'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0xCBF43926U);
}

}  // namespace
}  // namespace kvr::images
