// What an image is, told before it is sent.
#include <gtest/gtest.h>

#include <random>

#include "images/file_facts.h"
#include "platform/text.h"
#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using Lines = std::vector<std::string>;

FileContent content(std::string_view text) {
  const auto bytes = platform::bytesOf(text);
  return {.bytes = {bytes.begin(), bytes.end()}};
}

FileFacts hexFacts(std::string_view text, std::int32_t start = 0) {
  return fileFacts("a.hex", content(text), start);
}

FileFacts binFacts(const platform::Bytes& bytes, std::int32_t start = 0) {
  return fileFacts("a.bin", {.bytes = bytes}, start);
}

catalogue::SelectedModel model(const char* name) {
  return catalogue::describeModel(*catalogue::findByName(name));
}

TEST(ImageFacts, TellWhereTheFirstJumpLeads) {
  struct Case {
    platform::Bytes bytes;
    std::int32_t address;
    std::optional<FirstVector> jump;
  };
  const std::vector<Case> cases = {{{0x02, 0x12, 0x34}, 0, FirstVector{"LJMP", 0x1234}},
                                   {{0x80, 0x10}, 0, FirstVector{"SJMP", 0x12}},
                                   {{0x80, 0xFE}, 0, FirstVector{"SJMP", 0x0000}},
                                   {{0x80, 0x80}, 0, FirstVector{"SJMP", 0xFF82}},
                                   {{0xE1, 0x23}, 0, FirstVector{"AJMP", 0x0723}},
                                   {{0x01, 0x40}, 0, FirstVector{"AJMP", 0x0040}},
                                   {{0x12, 0x12, 0x34}, 0, std::nullopt},
                                   {{0x02}, 0, std::nullopt},
                                   {{}, 0, std::nullopt},
                                   {{0x11, 0x40}, 0, std::nullopt}};
  for (const Case& c : cases) EXPECT_EQ(jumpAt(c.bytes, c.address), c.jump) << testing::PrintToString(c.bytes);
  platform::Bytes high(0x0800, 0);
  high[0x7FE] = 0x21;  // the page is that of the next instruction, which begins another one
  high[0x7FF] = 0x05;
  EXPECT_EQ(jumpAt(high, 0x7FE), (FirstVector{"AJMP", 0x0905}));
}

TEST(ImageFacts, OfAHexFileAreRangesGapsOverlapsAndRecordsOfOtherTypes) {
  const FileFacts facts = hexFacts(
      ":020000040000FA\n"
      ":03000000020100FA\n"
      ":0401000075810722DC\n"
      ":02010200AABB96\n"
      ":0100500000AF\n"
      ":0400000500000000F7\n"
      ":00000001FF\n");
  EXPECT_EQ(facts.image.ranges, (std::vector<AddressRange>{{0, 3}, {0x50, 0x50}, {0x100, 0x103}}));
  EXPECT_EQ(facts.image.gaps(), (std::vector<AddressRange>{{4, 0x4F}, {0x51, 0xFF}}));
  EXPECT_EQ(facts.overlaps, (std::vector<AddressRange>{{0, 2}, {0x102, 0x103}}));
  EXPECT_EQ(facts.recordsOfType[0], 4);
  EXPECT_EQ(facts.recordsOfType[4], 1);
  EXPECT_EQ(facts.image.bytes, 9);
  // The record of type 5 is data to this program, so it wipes out the jump: just what the user must see.
  EXPECT_FALSE(facts.image.vector && facts.image.vector->target == 0x100);
  const Lines warnings = warningLines(facts, nullptr, ImageKind::Code);
  EXPECT_NE(std::find(warnings.begin(), warnings.end(), "Begins with 00, as empty memory does."), warnings.end());
  EXPECT_NE(
      std::find(warnings.begin(), warnings.end(), "2 records of type 2 to 5, taken as data (no extended addressing)."),
      warnings.end());
}

TEST(ImageFacts, WarnOfAnImageThatCannotRun) {
  const auto ivy = model("Ivy-HF0S");
  const auto warnings = [&](const platform::Bytes& bytes, std::int32_t start) {
    return warningLines(binFacts(bytes, start), &ivy, ImageKind::Code);
  };
  EXPECT_EQ(warnings({0x75, 0x01}, 0x100), Lines{"Starts at 0100H, not at 0000H."});
  EXPECT_EQ(warnings({0x02, 0x80, 0x00}, 0), Lines{"The first jump leads to 8000H, where the image holds nothing."});
  EXPECT_EQ(warnings(platform::Bytes(0xF000, 0x75), 0), Lines{}) << "one that just fits";
}

TEST(ImageFacts, DataMemoryThatFollowsTheCodeIsCountedApart) {
  const auto cedar = model("Cedar-H50D");  // its Data Memory begins at 8000H in the file
  FileLayer image{.bytes = std::vector<std::uint8_t>(0x9000), .written = std::vector<std::uint8_t>(0x9000)};
  for (const std::size_t at : {0x0000, 0x4FFF, 0x5000, 0x7FFF, 0x8000}) image.written[at] = 1;
  const AreaFit fit = fitOf(factsOf(image), cedar, ImageKind::Code);
  EXPECT_EQ(fit.filled, 2);
  EXPECT_EQ(fit.inData, 1);
  EXPECT_EQ(fit.beyond, 2);
  EXPECT_EQ(fit.beyondFrom, 0x5000);
}

TEST(ImageFacts, AConvertedImageIsTheSameImage) {
  for (std::uint32_t seed = 1; seed <= 20; ++seed) {
    std::mt19937 random(seed);
    FileLayer image{.bytes = std::vector<std::uint8_t>(0x10000), .written = std::vector<std::uint8_t>(0x10000)};
    for (int part = 0; part < 5; ++part)
      for (std::size_t at = random() % 0xFF00, n = random() % 200; n > 0; --n, ++at) {
        image.bytes[at] = static_cast<std::uint8_t>(random());
        image.written[at] = 1;
      }
    const auto hex = asHex(image);
    const FileFacts back = hexFacts({reinterpret_cast<const char*>(hex.data()), hex.size()});
    EXPECT_EQ(differencesOf(image, back.layer), std::vector<Difference>{}) << seed;
    EXPECT_EQ(warningLines(back, nullptr, ImageKind::Data).size(), back.image.first() > 0 ? 1u : 0u) << seed;
    const auto binary = asBinary(image, 0xA5);
    for (std::size_t i = 0; i < binary.size(); ++i)
      ASSERT_EQ(binary[i], image.written[i] ? image.bytes[i] : 0xA5) << seed;
  }
  FileLayer tall{.bytes = std::vector<std::uint8_t>(0x10001, 7), .written = std::vector<std::uint8_t>(0x10001, 1)};
  EXPECT_TRUE(asHex(tall).empty());
}

TEST(ImageFacts, DifferencesAreRangesOfTheirKind) {
  const FileFacts a = hexFacts(":0400000001020304F2\n:020100001122CA\n:00000001FF\n");
  const FileFacts b = hexFacts(":0600000001FF03AA050642\n:00000001FF\n");
  using Kind = Difference::Kind;
  const std::vector<Difference> expected = {
      {Kind::Bytes, {1, 1}}, {Kind::Bytes, {3, 3}}, {Kind::OnlySecond, {4, 5}}, {Kind::OnlyFirst, {0x100, 0x101}}};
  const auto found = differencesOf(a.layer, b.layer);
  EXPECT_EQ(found, expected);
  EXPECT_EQ(differenceText(found[0], a.layer, b.layer), "0001H  1 byte differs: 02 | FF");
  EXPECT_EQ(differenceText(found[3], a.layer, b.layer), "0100H - 0101H  2 bytes only in the first: 11 22");
}

TEST(ImageFacts, AreShownBesideTheFileAsLongAsItIsLoaded) {
  ImagesBench bench{"Ivy-HF0S"};
  ImagePanel& panel = bench.room.panel;
  EXPECT_EQ(panel.labFileFacts.caption() + panel.labFileWarnings.caption(), "");
  platform::Bytes bytes(1024, 0x75);
  bytes[0] = 0x80;
  bench.openCode("/good.bin", bytes);
  EXPECT_EQ(panel.labFileFacts.caption(), "1 KB of 60 KB · vector 0077H · last 03FFH");
  EXPECT_EQ(panel.labFileWarnings.caption(), "");
  bytes.assign(0xF010, 0xFF);
  bench.openCode("/large.bin", bytes);
  EXPECT_EQ(panel.labFileWarnings.caption(),
            "Begins with FF, as empty memory does.\nLarger than Ivy-HF0S: 16 bytes from F000H on have no place.");
  bench.openCode("/cut.hex", std::string(":0100000075AA\n"));
  EXPECT_NE(panel.labFileWarnings.caption().find("has no end record"), std::string::npos);
  bench.room.loader.clearBuffers();
  EXPECT_EQ(panel.labFileFacts.caption() + panel.labFileWarnings.caption(), "");
}

}  // namespace
}  // namespace kvr::images
