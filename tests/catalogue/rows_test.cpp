// The rules that the rows obey. A row that breaks one is named.
#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <charconv>
#include <map>
#include <set>
#include <string>

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {
namespace {

bool isSeriesRow(const McuRecord& r) {
  return r.name.ends_with("Series");
}

int codeOf(const McuRecord& r) {
  int value = -1;
  std::from_chars(r.code.data(), r.code.data() + r.code.size(), value, 16);
  return value;
}

// The letter of the variant; 0 for none.
char variantOf(const McuRecord& r) {
  std::string_view name = r.name;
  if (isSelfWriting(r)) name.remove_suffix(1);
  // Pages are hexadecimal: a letter is a variant only behind at least two digits, three for 64 KB.
  const std::size_t digits = r.apEnd == 65535 ? 3 : 2;
  const auto rest = name.substr(name.find('-') + 2 + digits);
  return rest.empty() ? '\0' : rest.front();
}

int sizeInKb(const McuRecord& r) {
  return (r.apEnd + 8) / 1024;
}

std::string upperHex(int value) {
  std::array<char, 8> digits{};
  auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  std::string text(digits.data(), end);
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text.size() < 2 ? "0" + text : text;
}

TEST(CatalogueRows, AreAllThereInTableOrder) {
  ASSERT_EQ(allRows().size(), 808u);
  for (std::size_t i = 1; i < allRows().size(); ++i) {
    const McuRecord &before = allRows()[i - 1], &r = allRows()[i];
    EXPECT_LT(std::pair(before.family, before.row), std::pair(r.family, r.row)) << r.name;
  }
}

TEST(CatalogueRows, BearNamesThatTellSeriesVoltageSizeAndVariant) {
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
    if (r.family <= Family::Birch) continue;  // no Data Memory: both ends bear the application's last address
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

// What the low byte of a code adds to the size, by variant, for H models; L models add 0x80 unless told otherwise.
struct CodeRule {
  Family family;
  int high;
  int lowVoltageAdds;
  std::map<char, int> bases;
};

TEST(CatalogueRows, HaveCodesThatCountTheSize) {
  const CodeRule rules[] = {
      {Family::Elm, 0xF2, 0x20, {{'A', 0x10}, {0, 0x00}}},
      {Family::Fir, 0xE0, 0x80, {{'A', 0x60}, {0, 0x00}}},
      {Family::Gum, 0xE6, 0x80, {{'A', 0x60}, {0, 0x00}}},
      {Family::Hazel, 0xE1, 0x80, {{'A', 0x60}, {'P', 0x20}, {0, 0x00}}},
      {Family::Juniper, 0xD2, 0x80, {{'Y', 0x60}, {'X', 0x40}, {0, 0x00}}},
      {Family::Pine, 0xF2, 0x40, {{'E', 0x90}, {0, 0x80}}},
      {Family::Quince, 0xF3, 0x40, {{'G', 0x90}, {0, 0x80}}},
      {Family::Sumac, 0xD4, 0x80, {{'A', 0x40}, {'C', 0x30}, {'Y', 0x20}, {'E', 0x10}, {0, 0x00}}},
  };
  const std::map<std::pair<Family, char>, int> selfWriting = {
      // bases of i models
      {{Family::Juniper, 'Y'}, 0x70}, {{Family::Juniper, 'X'}, 0x70}, {{Family::Juniper, 0}, 0x30},
      {{Family::Pine, 'E'}, 0xB0},    {{Family::Quince, 'G'}, 0xB0},  {{Family::Sumac, 'A'}, 0x50}};
  for (const CodeRule& rule : rules) {
    for (const McuRecord& r : allRows()) {
      if (r.family != rule.family || isSeriesRow(r) || (r.family == Family::Fir && r.row >= 46)) continue;
      const int base = isSelfWriting(r) ? selfWriting.at({r.family, variantOf(r)}) : rule.bases.at(variantOf(r));
      const int kb = r.apEnd == 24574 ? 24 : sizeInKb(r);
      EXPECT_EQ(codeOf(r), rule.high * 256 + base + kb + (voltageClass(r) == 'L' ? rule.lowVoltageAdds : 0)) << r.name;
    }
  }
}

TEST(CatalogueRows, OfIvyAndLarchCountPagesOfTwoKilobytesInTheirCodes) {
  const std::map<char, int> ivy = {{'S', 3}, {'A', 2}, {'C', 1}, {'X', 0}, {0, 0}};
  const std::map<char, int> larch = {{'Y', 3}, {'X', 2}, {0, 0}};
  for (const McuRecord& r : allRows()) {
    if (r.family != Family::Ivy && r.family != Family::Larch) continue;
    const int kb = sizeInKb(r);
    EXPECT_EQ(codeOf(r) >> 8, r.family == Family::Ivy ? 0xD1 : 0xD3) << r.name;
    EXPECT_EQ(codeOf(r) & 0x1F, kb == 62 ? 0x1F : kb / 2 - (isSelfWriting(r) ? 1 : 0)) << r.name;
    EXPECT_EQ((codeOf(r) >> 5) & 3, (r.family == Family::Ivy ? ivy : larch).at(variantOf(r))) << r.name;
    EXPECT_EQ((codeOf(r) & 0x80) != 0, voltageClass(r) == 'L') << r.name;
  }
}

TEST(CatalogueRows, ShareCodesOnlyWhereOneChipBearsSeveralNames) {
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

TEST(CatalogueRows, OfFirRepeatThePartsUnderTheirOlderCodes) {
  std::map<std::string_view, const McuRecord*> byAltCode;
  int older = 0;
  for (const McuRecord& r : allRows()) {
    if (r.family != Family::Fir) continue;
    if (!r.altCode.empty()) byAltCode[r.altCode] = &r;
    if (r.row < 46) continue;
    ++older;
    ASSERT_TRUE(byAltCode.contains(r.code)) << r.name;
    const McuRecord& part = *byAltCode[r.code];
    EXPECT_EQ(r.name, part.name);
    EXPECT_TRUE(r.apEnd == part.apEnd && r.dataStart == part.dataStart && r.dataEnd == part.dataEnd) << r.name;
    EXPECT_FALSE(r.listed || r.apUpToIsp || !r.altCode.empty()) << r.name;
  }
  EXPECT_EQ(older, 28);
  EXPECT_EQ(byAltCode.size(), 28u);
}

}  // namespace
}  // namespace kvr::catalogue
