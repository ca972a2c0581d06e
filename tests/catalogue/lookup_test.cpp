#include <gtest/gtest.h>

#include <set>
#include <string>

#include "catalogue/device_tree.h"
#include "catalogue/mcu_record.h"

namespace kvr::catalogue {
namespace {

TEST(Lookup, FindsEveryNameAtTheFirstRowThatCarriesIt) {
  std::set<std::string_view> seen;
  for (const McuRecord& r : allRows()) {
    const McuRecord* found = findByName(r.name);
    ASSERT_NE(found, nullptr) << r.name;
    EXPECT_EQ(found == &r, seen.insert(r.name).second) << r.name << " row " << r.row;
  }
  for (const char* name : {"", "Ivy", "Ivy-HF0S ", "ivy-HF0S", "Zebra-H04", "Alder"}) {
    EXPECT_EQ(findByName(name), nullptr) << name;
  }
}

TEST(Lookup, TakesTheRowThatTheUserMeans) {
  const struct {
    const char* code;
    const char* name;
    int row;
  } cases[] = {{"56", "Birch-LFCA", 0},      {"F311", "Fir-H04A", 0}, {"F402", "Maple-H20R", 1},
               {"F001", "Cedar-H10R", 0},    {"D164", "Ivy-H20S", 0}, {"  D164 ", "Ivy-H20S", 0},
               {"E01E", "Fir-H Series", 44}, {"F40F", "Rowan-HF0", 7}};
  for (const auto& c : cases) {
    const McuRecord* found = findModelByCode(c.code);
    ASSERT_NE(found, nullptr) << c.code;
    EXPECT_EQ(found->name, c.name);
    EXPECT_EQ(found->row, c.row) << c.code;
  }
  for (const char* code : {"FF", "", " ", "d164", "D1", "D16", "D1640", "0000"}) {
    EXPECT_EQ(findModelByCode(code), nullptr) << code;
  }
  EXPECT_EQ(findByName("Cedar-L10R")->code, findByName("Cedar-H10R")->code);
}

TEST(Lookup, KnowsWhichModelsTakeADataFile) {
  // Data Memory inside the code file, or beginning after its own end, is no file.
  for (const char* name : {"Ivy-H20X", "Ivy-H20Si", "Hazel-H18", "Cedar-H10D", "Oak-H10A"})
    EXPECT_FALSE(hasDataFile(*findByName(name))) << name;
  for (const char* name : {"Ivy-H20S", "Rowan-H20", "Sumac-H08Ai"}) EXPECT_TRUE(hasDataFile(*findByName(name))) << name;
  McuRecord record = *findByName("Gum-H04");
  record.dataEnd = record.dataStart + 100;
  EXPECT_FALSE(hasDataFile(record));
  record.dataEnd += 1;
  EXPECT_TRUE(hasDataFile(record));
}

TEST(IspRanges, FollowFamilyAndBootBlock) {
  const struct {
    const char* name;
    int ispStart, top;
  } cases[] = {{"Birch-LFCA", 64512, 0xFBFF}, {"Birch-L80A", 64512, 32767},  {"Alder-H100D", 65536, 65535},
               {"Alder-H80D", 57344, 32767},  {"Cedar-H50D", 62464, 20479},  {"Cedar-H40D", 63488, 16383},
               {"Maple-HF4D", 63488, 63487},  {"Nutmeg-HF4D", 63488, 62463}, {"Oak-L10A", 63488, 4095},
               {"Elm-H04", 5120, 1023},       {"Fir-H5FA", 28672, 24574},    {"Gum-H78", 28672, 30719},
               {"Hazel-H18", 5120, 6143},     {"Ivy-HF8i", 62464, 63487},    {"Juniper-H38i", 13312, 14335},
               {"Pine-H03E", 5120, 1016},     {"Sumac-H08A", 13312, 2047},   {"Rowan-HF0", 0, 61439}};
  for (const auto& c : cases) {
    const IspRange range = computeIspRange(*findByName(c.name));
    EXPECT_EQ(range.ispStart, c.ispStart) << c.name;
    EXPECT_EQ(range.top, c.top) << c.name;
  }
}

TEST(DeviceTree, ShowsTheListedModelsOfTenSeries) {
  std::string order;
  for (const SeriesNode& node : deviceTree()) {
    order += std::to_string(numberOf(node.family)) + ":" + std::to_string(node.models.size()) + " ";
    EXPECT_EQ(node.key, std::string(kSeriesKeyPrefix) + std::string(traitsOf(node.family).name));
    for (const McuRecord* model : node.models)
      EXPECT_TRUE(model->listed && model->family == node.family && findByName(model->name) == model) << model->name;
  }
  EXPECT_EQ(order, "8:64 9:32 10:112 15:29 16:28 7:136 6:36 5:52 12:34 13:20 ");
}

}  // namespace
}  // namespace kvr::catalogue
