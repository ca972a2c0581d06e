// That every family has every trait, and that the traits of a family do not contradict each other or its models.
#include <gtest/gtest.h>

#include <set>

#include "catalogue/mcu_record.h"

namespace kvr::catalogue {
namespace {

TEST(Families, AreFoundByTheirNumberAndByTheLettersThatOnlyTheyHave) {
  std::set<std::string_view> names;
  std::set<char> letters;
  int before = -1;
  for (const FamilyTraits& traits : allFamilies()) {
    EXPECT_EQ(&traitsOf(traits.family), &traits);
    EXPECT_TRUE(numberOf(traits.family) > before && names.insert(traits.name).second) << traits.name;
    before = numberOf(traits.family);
    EXPECT_FALSE(traits.letters.empty());
    for (const char letter : traits.letters) {
      EXPECT_TRUE(letters.insert(letter).second) << letter;
      EXPECT_TRUE(familyOf(letter) == traits.family) << letter;
      EXPECT_EQ(Stepping(letter).longOptions(), traits.longOptions() || letter >= 'M') << letter;
    }
  }
  EXPECT_EQ(before, 18);
  for (const char letter : {'P', 'T', 'a', '\0', '\xC1'}) EXPECT_FALSE(familyOf(letter)) << letter;
}

// What one trait says follows from another: a row that breaks this has a slip in a column.
TEST(Families, HaveTraitsThatAgree) {
  for (const FamilyTraits& t : allFamilies()) {
    SCOPED_TRACE(std::string(t.name));
    EXPECT_EQ(t.firstGeneration(), t.usesTimer());
    EXPECT_EQ(t.firstGeneration(), t.waits != WaitRules::Later);
    EXPECT_EQ(t.firstGeneration(), t.sends == SendShape::WholeImage);
    EXPECT_EQ(t.firstGeneration(), t.layout <= OptionLayout::CedarByte);
    EXPECT_EQ(t.pulses(), t.oscillator != Oscillator::External);
    EXPECT_EQ(t.pulses(), t.allOptions());
    EXPECT_EQ(t.measuresOscillator(), t.upperBandOffset > 0);
    EXPECT_EQ(t.ispFrom == IspFrom::Address, t.ispStart > 0);
    EXPECT_TRUE(t.dataMemory || !t.dataFile);
    EXPECT_TRUE(!t.reported || t.watchdogByte >= 0 || t.cedarOptions());
    EXPECT_EQ(t.blockSize % t.frameSize, 0);
    EXPECT_EQ(t.letters.size() > 1, t.modelCheck == ModelCheck::ByName);
    for (const CodeSizes& sizes : {t.code, t.boardCode, t.boardImage}) EXPECT_LE(sizes.usual, sizes.larger);
    EXPECT_TRUE(!t.offlineBoard || (t.boardCode.usual > 0 && t.boardCode.usual <= t.boardImage.larger));
    EXPECT_TRUE(t.extraPages || !t.offlineBoard);
  }
}

TEST(Families, HaveTraitsThatFitTheirModels) {
  for (const McuRecord& r : allRows()) {
    SCOPED_TRACE(std::string(r.name));
    const FamilyTraits& t = traitsOf(r);
    EXPECT_EQ(r.code.size(), t.codes == CodeLookup::FourDigits ? 4u : 2u);
    EXPECT_TRUE(t.dataMemory || (r.dataStart == r.apEnd && r.dataEnd == r.apEnd));
    EXPECT_TRUE(!r.noOptions || t.panelSlot > 2) << "what is fixed is told in the words of the table";
    EXPECT_TRUE(!r.quirks.secondLetter || t.letters.size() > 1);
    EXPECT_TRUE(!isLargerPart(r) || !t.offlineBoard || sizeFor(r, t.boardCode) > r.apEnd);
  }
}

TEST(FirmwareVersions, StandInTheOrderOfTheirDigits) {
  EXPECT_EQ(FirmwareVersion::fromByte(0x63), (FirmwareVersion{6, 3}));
  EXPECT_EQ(FirmwareVersion::fromByte(0x63).text(), "6.3");
  EXPECT_EQ(FirmwareVersion::fromByte(0x5A).text(), "5.A");
  EXPECT_EQ(FirmwareVersion{}.text(), "");
  EXPECT_GT(FirmwareVersion::fromByte(0x5A), (FirmwareVersion{5, 9})) << "and not 5.0, as a number of its text would";
  EXPECT_GT(FirmwareVersion::fromByte(0xA0), (FirmwareVersion{6, 3}));
  EXPECT_GT(Stepping('\xC1'), Stepping('Z')) << "a garbled letter is no old one";
  EXPECT_EQ(Stepping{}.text(), "");
}

}  // namespace
}  // namespace kvr::catalogue
