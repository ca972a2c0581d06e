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

TEST(DeviceTree, ShowsListedModelsUnderTheirSeries) {
  std::size_t models = 0;
  for (const SeriesNode& node : deviceTree())
    for (const McuRecord* model : node.models) {
      EXPECT_TRUE(model->listed && model->family == node.family && findByName(model->name) == model) << model->name;
      ++models;
    }
  EXPECT_EQ(models, 543U);
}

}  // namespace
}  // namespace kvr::catalogue
