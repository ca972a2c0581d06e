#include <cmath>

#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

double generalClock(const Bytes& status, int ratio, int ca, int counts) {
  double sum = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(counts); ++i) sum += status[2 * i + 4] * 256 + status[2 * i + 5];
  return (std::round(sum * ratio / counts) + 6) * ca;
}

void bringToData(Hand& hand) {
  hand.sync();
  ASSERT_EQ(hand.ask(0x50, hand.generic(), 300).at(3), 0x8F);
  hand.wire.write(hand.frame(0x8F, {192, 250, 0xFF, 12, 120, 131}), hand.now);
  hand.setLine({115200, 'e'});
  ASSERT_FALSE(hand.wait(900).empty());
  hand.setLine({9600, 'e'});
  hand.wait(50);
  hand.wire.write(hand.frame(0x8E, {192, 250, 0xFF, 12, 120}), hand.now);
  hand.setLine({115200, 'e'});
  ASSERT_EQ(hand.wait(900).at(3), 0x84);
  Bytes erase = {0xFF, 0, 0x20, 0, 0, 0x20, 0};  // nothing of the data area
  erase.resize(18, 0);
  for (int i = 0; i < 115; ++i) erase.push_back(static_cast<std::uint8_t>(0x80 - i));
  ASSERT_EQ(hand.ask(0x84, erase, 5000).at(3), 0x00);
}

TEST(SimulatedChip, CountsSoThatTheClockCanBeWorkedOutAtEveryFirstContactRate) {
  constexpr std::pair<int, int> kRates[] = {{1200, 2061}, {9600, 2068}, {57600, 2080}, {115200, 2101}};
  for (const auto& [name, counts] : {std::pair("Ivy-H20S", 8), std::pair("Sumac-H20A", 4), std::pair("Cedar-H80D", 8)})
    for (const auto& [baud, ca] : kRates) {
      Hand hand(configFor(model(name), 18432000));
      hand.setLine({baud, hand.line.parity});
      Bytes status = hand.sync(20);
      if (counts == 4) {  // the first answer only asks for measured pulses
        EXPECT_EQ(status.at(2), 7);
        hand.wire.write(hand.frame(0x80, {}), hand.now);
        hand.wait(20);
        hand.wire.write(Bytes(6, 0x7F), hand.now);
        hand.wait(800);
        status = hand.lastFrame();
      }
      EXPECT_NEAR(generalClock(status, baud / 1200, ca, counts) / 18432000, 1, 0.002) << name << " at " << baud;
      EXPECT_EQ(hand.chip.state(), ChipState::session) << name;
    }
}

TEST(SimulatedChip, TakesABlockAfterTheWholeOfItsSession) {
  Hand hand(configFor(model("Ivy-H20S"), 11059200));
  bringToData(hand);
  for (int address = 0; address < 512; address += 128) {
    Bytes data = {0, 0, static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address), 0, 128};
    data.insert(data.end(), 128, 3);
    const Bytes reply = hand.ask(0x00, data, 100);
    ASSERT_EQ(reply.size(), 8U);
    EXPECT_EQ(reply[3], 0x00);
    EXPECT_EQ(reply[4], (128 * 3) & 255);
  }
  EXPECT_EQ(hand.ask(0x69, hand.generic(), 100).at(3), 0x8D);
  EXPECT_TRUE(std::all_of(hand.chip.flash().begin(), hand.chip.flash().begin() + 512, [](int b) { return b == 3; }));
  EXPECT_EQ(hand.chip.flash()[512], 0xFF);
  EXPECT_EQ(hand.chip.memory().unerasedWrites(), 0);
  EXPECT_EQ(hand.chip.violationText(), "");
}

TEST(SimulatedChip, HoldsAgainstTheHostWhatTheHostDoesWrong) {
  struct Wrong {
    const char* what;
    int command;
    Bytes payload;
  };
  Bytes intoBoot = {0, 0, 0xF3, 0xC1, 0, 64};
  intoBoot.insert(intoBoot.end(), 64, 0);
  Bytes acrossBlocks = {0, 0, 0x01, 0xC1, 0, 64};
  acrossBlocks.insert(acrossBlocks.end(), 64, 0);
  Bytes wrongCount = {0, 0, 0, 0, 0, 65};
  wrongCount.insert(wrongCount.end(), 64, 0);
  Bytes repeatOfNothing = {0, 0, 2, 0, 0, 64};
  repeatOfNothing.insert(repeatOfNothing.end(), 64, 0);
  const Wrong wrongs[] = {{"into the boot block", 0x00, intoBoot},
                          {"crosses a block", 0x00, acrossBlocks},
                          {"count", 0x00, wrongCount},
                          {"begins no known block", 0x30, repeatOfNothing},
                          {"before any data", 0x69, {7, 0, 0x36, 0x01, 0xD1, 0x64}},
                          {"model code", 0x50, {7, 0, 0x36, 0x01, 0xD1, 0x63}},
                          {"options: length", 0x8D, {1, 2, 3}},
                          {"unknown command", 0x77, {}}};
  for (const Wrong& wrong : wrongs) {
    Hand hand(configFor(model("Ivy-H20S"), 11059200));
    bringToData(hand);
    hand.ask(wrong.command, wrong.payload, 200);
    EXPECT_NE(hand.chip.violationText().find(wrong.what), std::string::npos)
        << wrong.what << " but: " << hand.chip.violationText();
  }
}

TEST(SimulatedChip, HoldsAFrameAtTheWrongRateAgainstTheHostButNotSyncBytes) {
  Hand hand(configFor(model("Gum-H20"), 11059200));
  hand.sync();
  hand.setLine({19200, 'e'});
  hand.ask({0x7F, 0x7F, 0x7F, 0x7F}, 100);
  EXPECT_EQ(hand.chip.violationText(), "");
  hand.ask(0x50, hand.generic(), 300);
  EXPECT_NE(hand.chip.violationText().find("while I listen at 9600"), std::string::npos);
}

TEST(SimulatedChip, AnswersABaudTestAtTheNewRateAndGoesBack) {
  Hand hand(configFor(model("Gum-H20"), 11059200));
  hand.sync();
  hand.ask(0x50, hand.generic(), 300);
  hand.wire.write(hand.frame(0x8F, {192, 250, 0xFF, 12, 120, 131}), hand.now);
  hand.wait(500);
  EXPECT_EQ(hand.wire.log().back().line.baud, 115200);
  EXPECT_EQ(hand.chip.line()->baud, 9600);
  EXPECT_EQ(hand.chip.violationText(), "");
}

TEST(SimulatedChip, SaysAgainWhoItIsWhenItsStatusFrameIsLost) {
  WireConfig wire;
  wire.faults = {{Direction::deviceToHost, 0, FaultKind::lose}};
  Hand hand(configFor(model("Cedar-H80D"), 12000000), wire);
  EXPECT_FALSE(hand.sync().empty());
  const auto said = std::count_if(hand.wire.log().begin(), hand.wire.log().end(),
                                  [](const Unit& unit) { return unit.direction == Direction::deviceToHost; });
  EXPECT_EQ(said, 2);
  EXPECT_EQ(hand.chip.sessions(), 1);
}

TEST(SimulatedChip, AnswersTheFixedLinkAndLeavesOnItsEndFrame) {
  Hand hand(configFor(model("Nutmeg-H20R"), 12000000));
  hand.setLine({115200, 'n'});
  const Bytes call = {0xFE, 0xFE, 0xFE, 0xFE, 0x46, 0xB9, 0x6A, 0, 6, 0x8A, 0xFA, 0x16};
  const Bytes status = hand.ask(call, 100);
  ASSERT_GT(status.size(), 24U);
  double sum = 0;
  for (std::size_t i = 0; i < 8; ++i) sum += status[2 * i + 4] * 256 + status[2 * i + 5];
  EXPECT_NEAR(500.5 * (sum + 145), 12e6, 2000);
  const Bytes end = {0xFE, 0xFE, 0xFE, 0xFE, 0x46, 0xB9, 0x6A, 0, 6, 0x82, 0xF2, 0x16};
  hand.ask(end, 100);
  EXPECT_EQ(hand.chip.state(), ChipState::application);
  EXPECT_TRUE(hand.ask({0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F, 0x7F}, 300).empty());
  EXPECT_EQ(hand.chip.violationText(), "");
}

TEST(SimulatedChip, OfEveryModelHasItsBootBlockAboveItsApplicationAndSaysWhoItIs) {
  for (const McuRecord& row : kvr::catalogue::allRows()) {
    EXPECT_LT(row.apEnd, bootStartOf(row)) << row.name;
    ChipConfig config = configFor(row, 12000000);
    config.directStatus = true;
    Hand hand(config);
    const Bytes status = hand.sync(20);
    ASSERT_GT(status.size(), 27U) << row.name;
    EXPECT_EQ(status[2], status.size()) << row.name;
    EXPECT_EQ(status[23] * 256 + status[24],
              std::stoi(std::string(row.code) + (row.code.size() == 2 ? "FF" : ""), nullptr, 16))
        << row.name;
    EXPECT_EQ(status.size() < 57 || (status[54] & 1) == 0, true) << row.name;
  }
}

TEST(SimulatedChip, ExcusesWhatFollowsADisturbanceOfTheWire) {
  WireConfig wire;
  wire.faults = {{Direction::hostToDevice, -1, FaultKind::lose}};
  Hand counted(configFor(model("Ivy-H20S"), 11059200));
  bringToData(counted);
  int units = 0;
  for (const Unit& unit : counted.wire.log()) units += unit.direction == Direction::hostToDevice ? 1 : 0;
  wire.faults[0].unit = units;  // the first data frame
  Hand hand(configFor(model("Ivy-H20S"), 11059200), wire);
  bringToData(hand);
  Bytes data = {0, 0, 0, 0, 0, 128};
  data.insert(data.end(), 128, 0x55);
  EXPECT_TRUE(hand.ask(0x00, data, 1000).empty());
  EXPECT_FALSE(hand.ask(0x30, data, 1000).empty());
  EXPECT_EQ(hand.chip.violationText(), "");
}

}  // namespace
}  // namespace sim::testing
