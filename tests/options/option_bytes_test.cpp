#include <gtest/gtest.h>

#include <map>

#include "options/compose_options.h"
#include "options/option_table.h"

namespace kvr::options {
namespace {

using Bytes = std::map<int, int>;  // byte index, value; what is missing is 255

OptionBytes spread(const Bytes& bytes) {
  OptionBytes all;
  all.fill(255);
  for (const auto& [index, value] : bytes) all[static_cast<std::size_t>(index)] = static_cast<std::uint8_t>(value);
  return all;
}

// Every button the other way round, every list at its far end.
PanelValues opposite(PanelValues values) {
  for (auto& [key, value] : values.choices) value = value == "True" ? "False" : "True";
  values.prescaler = "2";
  values.wakeUpDelay = "4096";
  values.lowVoltageIndex = 4;
  values.trimBand = 3;
  values.trimStep = 63;
  values.trimFine = 1;
  return values;
}

struct Expected {
  std::vector<int> families;
  Bytes untouched, opposite;
};

// Worked out by hand from each chip's option bytes.
const std::vector<Expected> kExpected = {
    {{0}, {{1, 0xF7}}, {}},
    {{1}, {}, {}},
    {{2, 11, 12, 13}, {{1, 0xFD}}, {{1, 0x00}}},
    {{3, 4, 5}, {{0, 0xBF}, {8, 0xF7}}, {{2, 0xFD}, {3, 0x50}, {8, 0xF4}, {16, 0xFE}}},
    {{6}, {{2, 0x7D}, {3, 0xF7}, {8, 0xF7}}, {{0, 0xBF}, {2, 0xBF}, {3, 0x58}, {8, 0xF4}}},
    {{7}, {{1, 0x7F}, {2, 0xF7}}, {{0, 0xBE}, {1, 0xBD}, {2, 0x58}, {8, 0xFC}}},
    {{8}, {{0, 0xBF}, {1, 0x7F}, {2, 0xF7}}, {{0, 0xFE}, {1, 0xBD}, {2, 0x58}, {8, 0xFC}}},
    {{9}, {{0, 0xBF}, {1, 0x7D}, {2, 0xF7}}, {{0, 0xCE}, {1, 0xBF}, {2, 0x58}, {8, 0xFC}}},
    {{10}, {{0, 0xBF}, {1, 0x7F}, {2, 0xF7}}, {{0, 0xCE}, {1, 0xBD}, {2, 0x58}, {8, 0xFC}}},
    {{15, 16},
     {{0, 0xEF}, {1, 0xFC}, {2, 0xF7}, {3, 88}, {4, 128}},
     {{0, 0x7F}, {1, 0x38}, {2, 0x58}, {3, 88}, {4, 128}, {12, 0xFC}}},
    {{17},
     {{0, 0xBF}, {1, 0x7F}, {2, 0xF7}, {3, 0}, {4, 128}},
     {{0, 0xFE}, {1, 0xBD}, {2, 0x58}, {3, 0xFF}, {4, 1}, {12, 0xFC}}},
    {{18}, {{0, 0x3F}}, {{3, 0xBD}, {4, 0x50}, {8, 0xE4}}},
};

TEST(OptionBytes, StandForTheDefaultsAndForTheirOppositesInEveryFamily) {
  int families = 0;
  for (const auto& row : kExpected)
    for (const int family : row.families) {
      SCOPED_TRACE(family);
      ++families;
      EXPECT_EQ(composeOptions(defaultValues(family), {}).bytes, spread(row.untouched));
      EXPECT_EQ(composeOptions(opposite(defaultValues(family)), {}).bytes, spread(row.opposite));
    }
  EXPECT_EQ(families, 18);
}

TEST(OptionTables, PairsAreOppositesOfOneBitAndNoBitServesTwoLines) {
  for (const int slot : {0, 2, 4, 5, 6, 7, 8, 9, 10, 15}) {
    std::map<std::pair<int, int>, std::string_view> lineOfBit;
    std::map<std::string_view, std::vector<OptionRow>> lines;
    for (const auto& row : optionRows(slot)) {
      if (!row.place.known()) continue;
      lines[row.control].push_back(row);
      EXPECT_EQ(lineOfBit.try_emplace({row.place.byte, row.place.bit}, row.control).first->second, row.control);
    }
    for (const auto& [line, rows] : lines) {  // of three choices the middle one has a bit of its own
      const auto &first = rows.front().place, &last = rows.back().place;
      EXPECT_TRUE(first.byte == last.byte && first.bit == last.bit && first.chosen != last.chosen) << slot << line;
    }
  }
}

TEST(OptionBytes, FieldsOfSeveralBitsTakeWhatTheListsSay) {
  auto values = defaultValues(7);
  for (const auto& [text, bits] : {std::pair{"2", 0}, {"8", 2}, {"128", 6}, {"256", 7}, {"", 7}, {"3", 7}}) {
    values.prescaler = text;
    EXPECT_EQ(composeOptions(values, {}).bytes[2], 0xF0 | bits) << text;
  }
  values = defaultValues(9);
  for (const auto& [text, bits] :
       {std::pair{"4096", 0x8F}, {"8192", 0x9F}, {"16384", 0xAF}, {"32768", 0xBF}, {"x", 0xBF}}) {
    values.wakeUpDelay = text;
    EXPECT_EQ(composeOptions(values, {}).bytes[0], bits) << text;
  }
  values = defaultValues(16);
  for (const auto& [index, bits] : {std::pair{0, 4}, {1, 3}, {4, 0}, {5, 5}, {-1, 5}}) {
    values.lowVoltageIndex = index;
    EXPECT_EQ(composeOptions(values, {}).bytes[1], 0xF8 | bits) << index;
  }
}

TEST(OptionBytes, OnlyTrimmedFamiliesTakeTheMeasuredRegisters) {
  const RcTrim trim{.code = 24, .fine = 7};
  EXPECT_EQ(composeOptions(defaultValues(15), trim).bytes[3], 24);
  EXPECT_EQ(composeOptions(defaultValues(15), trim).bytes[4], 7);
  EXPECT_EQ(composeOptions(defaultValues(17), trim), composeOptions(defaultValues(17), {}));
}

TEST(OptionBytes, AModelWithoutOptionsGetsTheFamilysBytesWhateverThePanelHolds) {
  for (const int family : {5, 6, 7, 8, 9, 10, 17}) {
    auto values = opposite(defaultValues(family));
    values.noOptions = true;
    EXPECT_EQ(composeOptions(values, {}).bytes, defaultBytes(family)) << family;
  }
}

TEST(OptionWords, AreReadByKeyFromTheBytesOfTheFamily) {
  EXPECT_EQ(composeOptions(defaultValues(2), {}).words, (OptionWords{"0", ""}));
  EXPECT_EQ(composeOptions(opposite(defaultValues(2)), {}).words, (OptionWords{"1", ""}));
  EXPECT_EQ(composeOptions(opposite(defaultValues(3)), {}).words, (OptionWords{"", "1"}));
  EXPECT_EQ(composeOptions(opposite(defaultValues(18)), {}).words, (OptionWords{"", "1"}));
  EXPECT_EQ(composeOptions(opposite(defaultValues(1)), {}).words, OptionWords{});
  const auto bytes = spread({{1, 0xEF}});  // bit 4 of byte 1 clear
  EXPECT_EQ(wordOf(2, "Half_Gain_YES", bytes), "1");
  EXPECT_EQ(wordOf(7, "Half_Gain_YES", bytes), "0");  // bit 6 there
  EXPECT_EQ(wordOf(7, "Double_speed_YES", bytes), "");
  EXPECT_EQ(wordOf(7, "WDT_Prescalar", bytes), "");
  EXPECT_EQ(wordOf(7, "Clew", bytes), "");
}

TEST(OptionWords, AreRefreshedFromTheChipAndWantedGoesBackToTheFamilysBytes) {
  OptionSet set{
      .wanted = spread({{1, 1}}), .reported = spread({{1, 0xFE}}), .wantedWords = {"0", "0"}, .reportedWords = {}};
  const auto before = set;
  refreshChoices(1, set);
  EXPECT_EQ(set, before);
  refreshChoices(12, set);
  EXPECT_EQ(set.reportedWords, (OptionWords{"1", ""}));
  EXPECT_EQ(set.wanted, spread({{1, 0xFD}}));
  EXPECT_EQ(set.wantedWords, before.wantedWords);
}

}  // namespace
}  // namespace kvr::options
