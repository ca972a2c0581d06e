// The parts of a board's memory image as values: limit, serial values, code fit, header, CRC table, coverage.
#include <gtest/gtest.h>

#include "engine/board_crc.h"
#include "offline/board_header.h"
#include "offline/download_limit.h"
#include "offline/increment_blocks.h"
#include "tests/offline/offline_bench.h"

namespace {

using namespace kvr::offline;
using kvr::catalogue::McuRecord;

const McuRecord& model(const char* name) {
  const McuRecord* record = kvr::catalogue::findByName(name);
  if (!record) throw std::runtime_error(name);
  return *record;
}

std::int64_t big(std::span<const std::uint8_t> bytes, int at, int size) {
  std::int64_t value = 0;
  for (int i = 0; i < size; ++i) value = value << 8 | bytes[at + i];
  return value;
}

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

TEST(FileBuffer, PutsTheDataImageWhereTheChipHasItsDataMemory) {
  const Bytes code = seededNoise(0x12001, 12345);
  const Bytes data(0x10001, 0x5A);
  const McuRecord& hazel = model("Hazel-H04");
  const FileBuffer both = prepareFileBuffer(hazel, {code, 0, 700, true}, {data, 0, 511, true});
  EXPECT_EQ(both.last, hazel.apEnd + 511);
  EXPECT_EQ(both.data, (kvr::catalogue::AddressRange{hazel.dataStart, hazel.dataStart + 511}));
  EXPECT_EQ(prepareFileBuffer(hazel, {code, 0, 9000, true}, {data, 0, 0, true}).last, 9000) << "no limit";
  EXPECT_EQ(prepareFileBuffer(model("Cedar-H20R"), {code, 0, 2000, true}, {data, 0, 511, true}).last, 2000)
      << "this family's boards take the code only";
}

BoardInputs inputsFor(const McuRecord& record) {
  BoardInputs inputs;
  inputs.record = &record;
  inputs.device = std::string(record.name);
  inputs.sorter = {true, false, false};
  for (int i = 0; i < 17; ++i) inputs.options[i] = static_cast<std::uint8_t>(0xA0 + i);
  return inputs;
}

Bytes headerFor(const McuRecord& record, int codeLast) {
  FileBuffer file;
  file.last = codeLast;
  Bytes header(kHeaderSize);
  fillBoardHeader(inputsFor(record), file, fitCode(record, 65536, file), header);
  return header;
}

TEST(Header, NamesTheModelAndEndsInItsCrc) {
  const McuRecord& ivy = model("Ivy-HF0S");
  const Bytes header = headerFor(ivy, 60 * 1024 - 1);
  EXPECT_EQ(std::string(header.begin(), header.begin() + 8), "Ivy-HF0S");
  EXPECT_EQ(big(header, 32, 2), 0xD17E);
  EXPECT_EQ(big(header, 34, 2), 0);
  EXPECT_EQ(Bytes(header.begin() + 36, header.begin() + 48), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 40, 0, 1, 0, 0, 0}));
  EXPECT_EQ(headerFor(model("Ivy-H20Si"), 20479)[43], 0xFF);
  EXPECT_EQ(header[120], 0xF3);
  EXPECT_EQ(header[254] | header[255] << 8, kvr::engine::boardCrc(std::span(header).first(254)));
}

TEST(Header, PlacesTheOptionBytesOfEachFamily) {
  const Bytes early = {255, 0xA1}, middle = {0xA2, 0xA3, 0xA8, 0xAA, 0xAB, 0xA0},
              late = {0xA0, 0xA1, 0xA2, 0xA3, 255, 255, 255, 255, 0xA8, 0xA9};
  for (const auto& [name, kept] : {std::pair("Birch-L40A", Bytes{}),
                                   {"Cedar-H20R", early},
                                   {"Oak-H10A", early},
                                   {"Elm-H04", middle},
                                   {"Hazel-H04A", middle},
                                   {"Ivy-HF0S", late},
                                   {"Quince-H07G", late}}) {
    const Bytes header = headerFor(model(name), 1023);
    Bytes expected = kept;
    expected.resize(16, 0xFF);
    EXPECT_EQ(Bytes(header.begin() + 48, header.begin() + 64), expected) << name;
  }
}

TEST(Header, LaysOutTheAreasOfTheChip) {
  using Numbers = std::vector<std::int64_t>;
  struct {
    const char* name;
    int codeLast;
    Numbers layout;  // areas A to D as first, last and pages, ranges E to H as three numbers
  } const rows[] = {
      {"Elm-H04", 1023, {0, 1023, 2,    1024, 4095, 6, 4096, 5119, 2,    5120, 8191, 6,
                         0, 4095, 5119, 0,    0,    0, 1024, 4095, 5119, 0,    0,    0}},
      {"Birch-L40A", 9999, {0, 16383, 32,    0, 0, 0, 0,     0,     0,     57344, 65535, 16,
                            0, 16383, 16383, 0, 0, 0, 10000, 16382, 16383, 0,     0,     0}},
      {"Fir-H20A", 20000, {0, 8191, 16,    0, 0, 0, 8192,  18943, 21,    28672, 32255, 7,
                           0, 8191, 18943, 0, 0, 0, 20001, 20000, 20000, 20000, 20000, 20000}},
      {"Quince-H07G", 2047, {0, 2040, 4,    0, 0, 0, 2048, 5119, 6,    5120, 8191, 6,
                             0, 2040, 5119, 0, 0, 0, 2048, 2047, 5119, 0,    0,    0}},
      {"Birch-LFCA", 1023, {0, 63488, 124,   0, 0, 0, 0,    0,     0,     57344, 65535, 16,
                            0, 63487, 63487, 0, 0, 0, 1024, 63487, 63487, 0,     0,     0}},
  };
  for (const auto& row : rows) {
    const Bytes header = headerFor(model(row.name), row.codeLast);
    Numbers layout;
    for (int at = 152; at < 184; at += 8)
      for (const auto& [offset, size] : {std::pair(0, 3), {3, 3}, {6, 2}})
        layout.push_back(big(header, at + offset, size));
    for (int at = 184; at < 220; at += 3) layout.push_back(big(header, at, 3));
    EXPECT_EQ(layout, row.layout) << row.name;
    EXPECT_EQ(big(header, 150, 2), 0x0200);
  }
  EXPECT_EQ(big(headerFor(model("Fir-H20A"), 1023), 34, 2), 0xF318);
  EXPECT_EQ(big(headerFor(model("Birch-L40A"), 1023), 32, 2), 0x5454) << "a short code is there twice";
}

TEST(BoardFacts, TellsWhatABoardCannotHold) {
  FileBuffer file;
  file.code = {0, 61439};
  file.last = 61439;
  const BoardFacts narrow{"17", 65536, false}, wide{"17", 65536, true};
  EXPECT_EQ(bytesLeftOut(file, 44031, wide), 17408);
  EXPECT_EQ(bytesLeftOut(file, 9999, narrow), 51440);
  file.code = {0, 1000};
  file.data = {1024, 2047};
  file.cut = 5;
  EXPECT_EQ(bytesLeftOut(file, 2046, wide), 6) << "cut code and the last data byte";
  EXPECT_EQ(bytesLeftOut(file, 500, wide), 5 + 500 + 1024);
}

}  // namespace
