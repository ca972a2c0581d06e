#include "images/range_rules.h"

#include <gtest/gtest.h>

#include "catalogue/selected_model.h"
#include "tests/images/images_bench.h"

namespace kvr::images {
namespace {

using platform::Bytes;

struct Case {
  std::string model;
  FileFormat format;
  std::int32_t first;
  std::int32_t last;  // the file holds 1 in every byte from first to last
  std::int32_t fileEnd;
  std::vector<catalogue::AddressRange> cleared;
  std::vector<std::string> messages;
  ImageKind kind = ImageKind::Code;
};

RangeVerdict judge(const Case& c) {
  const auto& model = *catalogue::findByName(c.model);
  Bytes bytes(kCodeBufferSize);
  for (std::int32_t i = c.first; i <= c.last; ++i) bytes[static_cast<std::size_t>(i)] = 1;
  const LoadedFile file{
      .format = c.format, .kind = c.kind, .fileStart = c.first, .fileEnd = std::max(511, c.last), .sum = 0x123};
  return judgeRange(model, catalogue::computeIspRange(model), file, bytes);
}

constexpr auto H = FileFormat::Hex;
constexpr auto B = FileFormat::Binary;

// What is said, of HEX files and of binaries.
const std::string kCut = "The file is over the valid scope, and the exceeding part has been cleared.";
const std::string kOver = " File over the valid scope.\n\n        Continue";
const std::string kData = " Data Memory contain datas.\n\n        Continue";
const std::string kBoth = " File over the valid scope.\n\n\n Data Memory contain datas.\n\n        Continue";
const std::string kOverB = "    File over the valid scope.\n\n          Continue";
const std::string kDataB = "   Data Memory contain datas.\n\n          Continue";
const std::string kBothB = "    File over the valid scope.\n\n\n   Data Memory contain datas.\n\n          Continue";
const std::string kGap = "    File over the valid scope(800 -- FFF).\n";
const std::string kGoOn = "\n" + std::string(17, ' ') + "Continue";
const std::string kAll = kGap + "Data Memory contain datas.\n\n    File over the valid scope.\n\n" + kGoOn;

TEST(RangeRules, SayWhatIsCutClearedAndToldAroundEveryLimit) {
  const Case cases[] = {
      // Code and data apart.
      {"Ivy-HF0S", H, 0, 0xEFFF, 0xEFFF, {}, {}},
      {"Ivy-HF0S", H, 0, 0xF000, 0xEFFF, {}, {kCut}},
      {"Ivy-HF0S", B, 0, 1024, 1023, {}, {kCut}, ImageKind::Data},
      // No Data Memory: cut at the end of the code.
      {"Ivy-H20X", H, 0, 8191, 8191, {{8192, 62463}}, {}},
      {"Ivy-H20X", H, 0, 8192, 8191, {{8192, 62463}, {8192, 62463}}, {kCut}},
      {"Hazel-H04", B, 0, 2000, 1023, {{1024, 5119}, {1024, 5119}}, {kCut}},
      // Code to 2047, nothing up to 4095, Data Memory 4096 to 5119. A binary is asked for its end, not for its content.
      {"Elm-H08A", H, 0, 2047, 2047, {{2048, 4095}}, {}},
      {"Elm-H08A", H, 0, 2048, 2048, {{2048, 4095}}, {kGap + kGoOn}},
      {"Elm-H08A", H, 4096, 4096, 4096, {{2048, 4095}}, {"Data Memory contain datas.\n\n\n         Continue"}},
      {"Elm-H08A", B, 0, 4096, 4096, {{2048, 4095}}, {kGap + kGoOn}},
      {"Elm-H08A", H, 0, 5120, 5119, {{2048, 4095}}, {kAll}},
      // An application that may rewrite its own code is cleared in the gap without a question.
      {"Ivy-HF0Si", H, 0, 0xEFFF, 0xEFFF, {}, {}},
      // Code to 32767, boot area from 57344, no Data Memory; then code to 16383, boot area from 64512.
      {"Alder-H80D", H, 0, 32767, 32767, {}, {}},
      {"Alder-H80D", H, 0, 32768, 32767, {{32768, 57343}}, {kCut, kOver}},
      {"Alder-H80D", B, 0, 32767, 32767, {{32768, 57343}}, {}},
      {"Alder-H80D", B, 0, 32768, 32767, {{32768, 57343}}, {kCut}},
      {"Birch-L40A", H, 0, 16384, 16383, {{16384, 64511}}, {kCut, kOver}},
      // Code to 8191, Data Memory 8192 to 14335, boot area 14336 to 15359; late members go the same way.
      {"Cedar-H20R", H, 0, 8192, 8192, {}, {kData}},
      {"Cedar-H20R", H, 0, 14335, 14335, {}, {kData}},
      {"Cedar-H20R", H, 0, 14336, 14335, {}, {kBoth}},
      {"Cedar-H20R", B, 0, 8192, 8192, {}, {kDataB}},
      {"Cedar-H20R", B, 0, 14336, 14335, {}, {kBothB}},
      {"Nutmeg-H20R", H, 0, 14336, 13311, {}, {kBoth}},
      // Data in the upper half: judged by halves.
      {"Cedar-H50D", H, 0, 20480, 62463, {{20480, 32767}}, {kOver}},
      {"Cedar-L50D", H, 32768, 32768, 32768, {{20480, 32767}}, {kData}},
      {"Cedar-H50D", B, 0, 20480, 20480, {{20480, 32767}}, {kOverB}},
      {"Cedar-H50D", B, 32768, 40000, 40000, {{20480, 32767}}, {kDataB}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.model + (c.format == H ? " HEX " : " BIN ") + std::to_string(c.first) + ".." +
                 std::to_string(c.last) + (c.kind == ImageKind::Code ? "" : " data"));
    const RangeVerdict verdict = judge(c);
    EXPECT_EQ(verdict.fileEnd, c.fileEnd);
    EXPECT_EQ(verdict.cleared, c.cleared);
    EXPECT_EQ(verdict.messages, c.messages);
  }
}

}  // namespace
}  // namespace kvr::images
