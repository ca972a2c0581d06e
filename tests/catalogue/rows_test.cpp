// The rules that the rows obey. A row that breaks one is named. (That no value of a row changes unnoticed is the work
// of docs/models.tsv, which the tests compare with the rows.)
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {
namespace {

bool isSeriesRow(const McuRecord& r) {
  return r.name.ends_with("Series");
}

// The letter of the variant; 0 for none.
char variantOf(const McuRecord& r) {
  std::string_view name = r.name;
  if (isSelfWriting(r)) name.remove_suffix(1);
  // Pages are hexadecimal: a letter is a variant only after at least two digits, three for 64 KB.
  const std::size_t digits = r.apEnd == 65535 ? 3 : 2;
  const auto rest = name.substr(name.find('-') + 2 + digits);
  return rest.empty() ? '\0' : rest.front();
}

std::string upperHex(int value) {
  char text[9];
  std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(value));
  return text;
}

TEST(CatalogueRows, AreAllThereInTableOrder) {
  ASSERT_EQ(allRows().size(), 808u);
  for (std::size_t i = 1; i < allRows().size(); ++i) {
    const McuRecord &before = allRows()[i - 1], &r = allRows()[i];
    EXPECT_LT(std::pair(before.family, before.row), std::pair(r.family, r.row)) << r.name;
  }
}

TEST(CatalogueRows, CarryNamesThatTellSeriesVoltageSizeAndVariant) {
  for (const McuRecord& r : allRows()) {
    EXPECT_TRUE(voltageClass(r) == 'H' || voltageClass(r) == 'L') << r.name;
    std::string name = std::string(traitsOf(r).name) + '-' + voltageClass(r);
    if (isSeriesRow(r)) {
      EXPECT_EQ(r.name, name + " Series");
      continue;
    }
    name += upperHex((r.apEnd + 1) / 256);
    const char variant = variantOf(r);
    if (variant != 0) {
      EXPECT_NE(std::string_view("ACDEGKPRSUVXYZ").find(variant), std::string_view::npos) << r.name;
      name += variant;
    }
    EXPECT_EQ(r.name, name + (isSelfWriting(r) ? "i" : ""));
  }
}

TEST(CatalogueRows, CarryTheFlagsOfTheirGeneration) {
  for (const McuRecord& r : allRows()) {
    const bool later = (r.family >= Family::Gum && r.family <= Family::Maple) || traitsOf(r).pulses();
    for (const bool flag : {r.extSession, r.parityUsed, r.parityEven, r.frame2}) EXPECT_EQ(flag, later) << r.name;
    EXPECT_EQ(r.noOptions, r.topBlockFree) << r.name;
    if (isSelfWriting(r) && r.family != Family::Sumac) {
      EXPECT_TRUE(r.noDataFile) << r.name;
    }
    if (r.apUpToIsp) {
      EXPECT_TRUE(r.family == Family::Birch || r.family == Family::Fir || r.family == Family::Maple) << r.name;
    }
  }
}

TEST(CatalogueRows, HoldOrderedAreas) {
  for (const McuRecord& r : allRows()) {
    EXPECT_EQ(r.apStart, 0) << r.name;
    EXPECT_LT(r.apEnd, r.bootEnd) << r.name;
    EXPECT_LT(r.bootStart, r.bootEnd) << r.name;
    EXPECT_EQ(r.bootEnd % 512, 511) << r.name;
    EXPECT_EQ(r.bootStart % 512, 0) << r.name;
    if (r.noOptions) {  // the whole top is theirs
      EXPECT_TRUE(r.dataEnd + 1 == r.bootStart && r.bootStart % 1024 == 0) << r.name;
    }
    if (r.family <= Family::Birch) continue;  // no Data Memory: both ends are the application's last address
    EXPECT_GT(r.dataStart, r.family == Family::Larch && r.dataEnd == r.apEnd ? r.dataEnd : r.apEnd) << r.name;
    EXPECT_EQ(r.dataStart % 512, 0) << r.name;
    // From Gum on nothing of the application or of its data reaches into the boot block.
    const bool second = traitsOf(r).dataFile;
    if (second) {
      EXPECT_LT(std::max(r.apEnd, r.dataEnd), r.bootStart) << r.name;
    }
    if (second && hasDataFile(r)) {
      EXPECT_EQ(r.dataEnd + 1, r.bootStart) << r.name;
    }
  }
}

TEST(CatalogueRows, ShareCodesOnlyWhereOneChipHasSeveralNames) {
  std::map<std::string_view, std::set<Family>> families;
  std::map<std::string_view, int> counts;
  for (const McuRecord& r : allRows()) {
    families[r.code].insert(r.family);
    ++counts[r.code];
    EXPECT_EQ(r.code.size(), r.family <= Family::Birch ? 2u : 4u) << r.name;
    if (!r.altCode.empty()) {
      EXPECT_TRUE(r.family == Family::Fir && r.altCode.starts_with("F3") && r.row < 44) << r.name;
    }
  }
  for (const auto& [code, owners] : families) {
    if (owners.size() > 1) {
      EXPECT_TRUE((owners == std::set{Family::Maple, Family::Rowan})) << code;
    }
    const Family first = *owners.begin();
    const bool mayRepeat =
        first == Family::Alder || first == Family::Cedar || first == Family::Maple || code == "56" || code == "E01E";
    if (!mayRepeat) {
      EXPECT_EQ(counts[code], 1) << code;
    }
  }
}

}  // namespace
}  // namespace kvr::catalogue
