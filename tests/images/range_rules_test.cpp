#include "images/range_rules.h"

#include <gtest/gtest.h>

#include "catalogue/selected_model.h"
#include "images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;

const char* const kCutText = "The file is over the valid scope, and the exceeding part has been cleared.";

struct Case {
  std::string model;
  FileFormat format;
  bool isCode;
  std::int32_t first;
  std::int32_t last;  // the file holds 1 in every byte from first to last
  std::int32_t fileEnd;
  std::vector<AddressSpan> cleared;
  std::vector<std::string> messages;
};

RangeVerdict judge(const Case& c) {
  const auto& model = *catalogue::findByName(c.model);
  Bytes bytes(kCodeBufferSize);
  for (std::int32_t i = c.first; i <= c.last; ++i) bytes[static_cast<std::size_t>(i)] = 1;
  const LoadedFile file{
      .format = c.format, .isCode = c.isCode, .fileStart = c.first, .fileEnd = std::max(511, c.last), .sum = 0x123};
  return judgeRange(model, catalogue::computeIspRange(model), file, bytes);
}

void check(const std::vector<Case>& cases) {
  for (const auto& c : cases) {
    const RangeVerdict verdict = judge(c);
    const std::string name = c.model + (c.format == FileFormat::Hex ? " HEX " : " BIN ") +
                             (c.isCode ? "code " : "data ") + std::to_string(c.first) + ".." + std::to_string(c.last);
    EXPECT_EQ(verdict.fileEnd, c.fileEnd) << name;
    EXPECT_EQ(verdict.cleared, c.cleared) << name;
    EXPECT_EQ(verdict.messages, c.messages) << name;
  }
}

constexpr auto H = FileFormat::Hex;
constexpr auto B = FileFormat::Binary;

TEST(RangeRules, ModelsWithADataFileHoldCodeAndDataApart) {
  check({{"Ivy-HF0S", H, true, 0, 0xEFFF, 0xEFFF, {}, {}},
         {"Ivy-HF0S", H, true, 0, 0xF000, 0xEFFF, {}, {kCutText}},
         {"Ivy-HF0S", B, true, 0, 0xF000, 0xEFFF, {}, {kCutText}},
         {"Ivy-HF0S", H, false, 0, 1023, 1023, {}, {}},
         {"Ivy-HF0S", B, false, 0, 1024, 1023, {}, {kCutText}}});
  EXPECT_EQ(judge({"Ivy-HF0S", H, true, 0, 9, 0, {}, {}}).sumText, "0000123H       ");
  EXPECT_EQ(judge({"Ivy-HF0S", H, false, 0, 9, 0, {}, {}}).sumText, "0000123H");
  EXPECT_FALSE(judge({"Ivy-HF0S", H, false, 0, 9, 0, {}, {}}).sumInCodeBox);
}

TEST(RangeRules, ModelsWithoutDataMemoryAreCutAtTheEndOfTheCode) {
  check({{"Ivy-H20X", H, true, 0, 8191, 8191, {{8192, 62463}}, {}},
         {"Ivy-H20X", H, true, 0, 8192, 8191, {{8192, 62463}, {8192, 62463}}, {kCutText}},
         {"Hazel-H04", B, true, 0, 2000, 1023, {{1024, 5119}, {1024, 5119}}, {kCutText}}});
}

TEST(RangeRules, OneFileModelsTellOfGapDataAndExcess) {
  // Elm-H08A: code to 2047, nothing up to 4095, Data Memory 4096 to 5119.
  const std::string gap = "    File over the valid scope(800 -- FFF).\n";
  const std::string blanks14(17, ' ');
  check({{"Elm-H08A", H, true, 0, 2047, 2047, {{2048, 4095}}, {}},
         {"Elm-H08A", H, true, 0, 2048, 2048, {{2048, 4095}}, {gap + "\n" + blanks14 + "Continue"}},
         {"Elm-H08A", H, true, 4096, 4096, 4096, {{2048, 4095}}, {"Data Memory contain datas.\n\n\n         Continue"}},
         // A binary is asked for its end, not for what it holds.
         {"Elm-H08A", B, true, 0, 4096, 4096, {{2048, 4095}}, {gap + "\n" + blanks14 + "Continue"}},
         {"Elm-H08A",
          H,
          true,
          0,
          5120,
          5119,
          {{2048, 4095}},
          {gap + "Data Memory contain datas.\n\n    File over the valid scope.\n\n\n" + blanks14 + "Continue"}},
         // An application that may rewrite its own code is cleared in the gap without a word.
         {"Ivy-HF0Si", H, true, 0, 0xEFFF, 0xEFFF, {}, {}}});
}

TEST(RangeRules, EarliestFamiliesClearWhatLiesBetweenCodeAndBootArea) {
  const std::string over = " File over the valid scope.\n\n        Continue";
  // Alder-H80D: code to 32767, boot area from 57344, no Data Memory. Birch-L40A: code to 16383, boot area from 64512.
  check({{"Alder-H80D", H, true, 0, 32767, 32767, {}, {}},
         {"Alder-H80D", H, true, 0, 32768, 32767, {{32768, 57343}}, {kCutText, over}},
         {"Alder-H80D", B, true, 0, 32767, 32767, {{32768, 57343}}, {}},
         {"Alder-H80D", B, true, 0, 32768, 32767, {{32768, 57343}}, {kCutText}},
         {"Birch-L40A", H, true, 0, 16383, 16383, {}, {}},
         {"Birch-L40A", H, true, 0, 16384, 16383, {{16384, 64511}}, {kCutText, over}}});
}

TEST(RangeRules, EarlyFamiliesTellOfDataBehindTheCode) {
  const std::string data = " Data Memory contain datas.\n\n        Continue";
  const std::string both = " File over the valid scope.\n\n\n Data Memory contain datas.\n\n        Continue";
  // Cedar-H20R: code to 8191, Data Memory 8192 to 14335, boot area 14336 to 15359.
  check({{"Cedar-H20R", H, true, 0, 8191, 8191, {}, {}},
         {"Cedar-H20R", H, true, 0, 8192, 8192, {}, {data}},
         {"Cedar-H20R", H, true, 0, 14335, 14335, {}, {data}},
         {"Cedar-H20R", H, true, 0, 14336, 14335, {}, {both}},
         {"Cedar-H20R", B, true, 0, 8192, 8192, {}, {"   Data Memory contain datas.\n\n          Continue"}},
         {"Cedar-H20R",
          B,
          true,
          0,
          14336,
          14335,
          {},
          {"    File over the valid scope.\n\n\n   Data Memory contain datas.\n\n          Continue"}},
         // Late members of the generation go the same way.
         {"Nutmeg-H20R", H, true, 0, 14336, 13311, {}, {both}}});
}

TEST(RangeRules, CedarsWithDataInTheUpperHalfAreJudgedByHalves) {
  const std::string over = " File over the valid scope.\n\n        Continue";
  const std::string data = " Data Memory contain datas.\n\n        Continue";
  check({{"Cedar-H50D", H, true, 0, 20479, 20479, {{20480, 32767}}, {}},
         {"Cedar-H50D", H, true, 0, 20480, 62463, {{20480, 32767}}, {over}},
         {"Cedar-L50D", H, true, 32768, 32768, 32768, {{20480, 32767}}, {data}},
         {"Cedar-H50D",
          B,
          true,
          0,
          20480,
          20480,
          {{20480, 32767}},
          {"    File over the valid scope.\n\n          Continue"}},
         {"Cedar-H50D",
          B,
          true,
          32768,
          40000,
          40000,
          {{20480, 32767}},
          {"   Data Memory contain datas.\n\n          Continue"}}});
}

TEST(RangeRules, EveryModelTakesAFileThatFillsItsCodeAreaWithoutAWord) {
  for (const auto& model : catalogue::allRows()) {
    const auto range = catalogue::computeIspRange(model);
    Bytes bytes(kCodeBufferSize);
    const std::int32_t last =
        catalogue::hasDataFile(model) ? model.apEnd : std::min<std::int32_t>(model.apEnd, range.top);
    for (std::int32_t i = 0; i <= last; ++i) bytes[static_cast<std::size_t>(i)] = 0x5A;
    const auto verdict = judgeRange(
        model, range, {.format = H, .isCode = true, .fileStart = 0, .fileEnd = std::max(511, last), .sum = 1}, bytes);
    const bool reachesBootArea =
        model.family <= 2 || catalogue::isLateFamily(model.family) ? last >= range.ispStart : last > model.dataEnd;
    if (reachesBootArea) continue;
    EXPECT_TRUE(verdict.messages.empty()) << model.name << ": " << verdict.messages.front();
    for (const auto& span : verdict.cleared) EXPECT_GT(span.first, model.apEnd) << model.name;
  }
}

TEST(RangeRules, StartAddressMayBeTheLastOneAndNoMore) {
  const auto& model = *catalogue::findByName("Ivy-HF0S");
  EXPECT_EQ(checkStart(model, true, model.dataEnd), "");
  EXPECT_EQ(checkStart(model, true, model.dataEnd + 1), "Start Buffer Address exceeded the valid scope. \n");
  EXPECT_EQ(checkStart(model, false, model.dataEnd - model.dataStart), "");
  EXPECT_NE(checkStart(model, false, model.dataEnd - model.dataStart + 1), "");
  EXPECT_NE(checkStart(model, true, 0xFFFFFFFFLL), "");
}

}  // namespace
}  // namespace kvr::images
