#include <gtest/gtest.h>

#include <map>

#include "catalogue/mcu_record.h"
#include "options/compose_options.h"
#include "options/option_table.h"

namespace kvr::options {
namespace {

using catalogue::Family;
using catalogue::traitsOf;

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
  std::vector<Family> families;
  Bytes untouched, opposite;
};

// Worked out by hand from each chip's option bytes.
const std::vector<Expected> kExpected = {
    {{Family::Alder}, {{1, 0xF7}}, {}},
    {{Family::Birch}, {}, {}},
    {{Family::Cedar, Family::Maple, Family::Nutmeg, Family::Oak}, {{1, 0xFD}}, {{1, 0x00}}},
    {{Family::Elm, Family::Fir, Family::Gum}, {{0, 0xBF}, {8, 0xF7}}, {{2, 0xFD}, {3, 0x50}, {8, 0xF4}, {16, 0xFE}}},
    {{Family::Hazel}, {{2, 0x7D}, {3, 0xF7}, {8, 0xF7}}, {{0, 0xBF}, {2, 0xBF}, {3, 0x58}, {8, 0xF4}}},
    {{Family::Ivy}, {{1, 0x7F}, {2, 0xF7}}, {{0, 0xBE}, {1, 0xBD}, {2, 0x58}, {8, 0xFC}}},
    {{Family::Juniper}, {{0, 0xBF}, {1, 0x7F}, {2, 0xF7}}, {{0, 0xFE}, {1, 0xBD}, {2, 0x58}, {8, 0xFC}}},
    {{Family::Kauri}, {{0, 0xBF}, {1, 0x7D}, {2, 0xF7}}, {{0, 0xCE}, {1, 0xBF}, {2, 0x58}, {8, 0xFC}}},
    {{Family::Larch}, {{0, 0xBF}, {1, 0x7F}, {2, 0xF7}}, {{0, 0xCE}, {1, 0xBD}, {2, 0x58}, {8, 0xFC}}},
    {{Family::Pine, Family::Quince},
     {{0, 0xEF}, {1, 0xFC}, {2, 0xF7}, {3, 88}, {4, 128}},
     {{0, 0x7F}, {1, 0x38}, {2, 0x58}, {3, 88}, {4, 128}, {12, 0xFC}}},
    {{Family::Sumac},
     {{0, 0xBF}, {1, 0x7F}, {2, 0xF7}, {3, 0}, {4, 128}},
     {{0, 0xFE}, {1, 0xBD}, {2, 0x58}, {3, 0xFF}, {4, 1}, {12, 0xFC}}},
    {{Family::Rowan}, {{0, 0x3F}}, {{3, 0xBD}, {4, 0x50}, {8, 0xE4}}},
};

TEST(OptionBytes, StandForTheDefaultsAndForTheirOppositesInEveryFamily) {
  int families = 0;
  for (const auto& row : kExpected)
    for (const Family family : row.families) {
      SCOPED_TRACE(std::string(traitsOf(family).name));
      ++families;
      EXPECT_EQ(composeOptions(defaultValues(family), {}).bytes, spread(row.untouched));
      EXPECT_EQ(composeOptions(opposite(defaultValues(family)), {}).bytes, spread(row.opposite));
    }
  EXPECT_EQ(families, 18);
}

TEST(OptionBytes, FieldsOfSeveralBitsTakeWhatTheListsSay) {
  auto values = defaultValues(Family::Ivy);
  for (const auto& [text, bits] : {std::pair{"2", 0}, {"8", 2}, {"128", 6}, {"256", 7}, {"", 7}, {"3", 7}}) {
    values.prescaler = text;
    EXPECT_EQ(composeOptions(values, {}).bytes[2], 0xF0 | bits) << text;
  }
  values = defaultValues(Family::Kauri);
  for (const auto& [text, bits] :
       {std::pair{"4096", 0x8F}, {"8192", 0x9F}, {"16384", 0xAF}, {"32768", 0xBF}, {"x", 0xBF}}) {
    values.wakeUpDelay = text;
    EXPECT_EQ(composeOptions(values, {}).bytes[0], bits) << text;
  }
  values = defaultValues(Family::Quince);
  for (const auto& [index, bits] : {std::pair{0, 4}, {1, 3}, {4, 0}, {5, 5}, {-1, 5}}) {
    values.lowVoltageIndex = index;
    EXPECT_EQ(composeOptions(values, {}).bytes[1], 0xF8 | bits) << index;
  }
}

TEST(OptionBytes, AModelWithoutOptionsGetsTheFamilysBytesWhateverThePanelHolds) {
  for (const auto& traits : catalogue::allFamilies()) {
    auto values = opposite(defaultValues(traits.family));
    values.noOptions = true;
    EXPECT_EQ(composeOptions(values, {}).bytes, defaultBytes(traits)) << traits.name;
  }
}

}  // namespace
}  // namespace kvr::options
