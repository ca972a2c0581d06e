#include <map>

#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

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

TEST(SimulatedChip, HoldsAgainstTheHostWhatTheHostDoesWrong) {
  struct Wrong {
    const char* what;
    int command;
    Bytes payload;
  };
  const auto data = [](int address, std::uint8_t count) {  // 64 bytes, whatever count they are sent with
    Bytes payload = {0, 0, static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address), 0, count};
    payload.resize(6 + 64);
    return payload;
  };
  const Wrong wrongs[] = {{"into the boot block", 0x00, data(0xF3C1, 64)},
                          {"crosses a block", 0x00, data(0x01C1, 64)},
                          {"count", 0x00, data(0, 65)},
                          {"begins no known block", 0x30, data(0x0200, 64)},
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

TEST(SimulatedChip, RefusesOptionListsThatContradictEachOther) {
  for (const bool wrong : {false, true}) {
    Hand hand(configFor(model("Gum-H20")));
    hand.sync();
    OptionBytes options{};
    options.fill(0x5F);
    Bytes payload(5, 0x5F);
    const Bytes clock = {0x00, 0xA8, 0xC0, 0x00};  // 11059200 Hz
    payload.insert(payload.end(), clock.begin(), clock.end());
    payload.insert(payload.end(), options.begin(), options.end());
    payload.insert(payload.end(), clock.begin(), clock.end());
    payload.insert(payload.end(), 3, 0xFF);
    if (wrong) payload[9 + 8] ^= 1;
    hand.ask(0x8D, payload, 500);
    EXPECT_EQ(hand.chip.violationText().find("two lists differ") != std::string::npos, wrong);
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

// Where a chip keeps and reports its options: option index by index of the reply to the reading, and of the status
// frame.
struct Layout {
  const char* model;
  int firmware;
  std::map<int, int> reply, status;
};

const Layout kLayouts[] = {
    {"Cedar-H20R", 0, {{13, 1}}, {{22, 1}}},
    {"Oak-H20A", 0, {{13, 1}}, {{27, 1}, {30, 8}}},
    {"Elm-H04", 0x52, {{13, 2}, {14, 3}, {15, 8}, {16, 10}, {17, 11}}, {{26, 2}, {27, 3}, {28, 8}, {29, 10}, {30, 11}}},
    {"Elm-H04", 0x56, {{19, 0}, {22, 3}, {23, 8}, {24, 9}}, {{32, 0}, {35, 3}, {36, 8}, {37, 9}}},
    {"Gum-H20", 0x57, {{13, 2}, {17, 11}}, {{26, 2}, {30, 11}}},
    {"Hazel-H04", 0x57, {{13, 2}, {16, 10}}, {{26, 2}, {29, 10}, {31, 0}}},
    {"Hazel-H04", 0x58, {{19, 0}, {21, 2}, {24, 9}}, {{32, 0}, {37, 9}}},
    {"Ivy-H20S", 0, {{13, 0}, {16, 3}, {17, 8}, {18, 9}}, {{26, 0}, {29, 3}, {30, 8}, {31, 9}}},
    {"Sumac-H20A", 0, {{13, 0}, {28, 15}}, {{26, 0}, {41, 15}}},
    {"Rowan-H20", 0, {{13, 0}, {14, 3}, {15, 4}, {16, 8}, {17, 10}, {18, 11}}, {{26, 0}, {29, 3}, {30, 8}}},
};

TEST(SimulatedChip, ReportsItsOptionsWhereItsFirmwareKeepsThem) {
  for (const Layout& layout : kLayouts) {
    SCOPED_TRACE(::testing::Message() << layout.model << std::hex << layout.firmware);
    ChipConfig config = configFor(model(layout.model));
    config.firmware = layout.firmware;
    config.directStatus = true;
    OptionBytes& held = config.options.emplace();
    for (std::size_t i = 0; i < held.size(); ++i) held[i] = static_cast<std::uint8_t>(0x91 + 7 * i);
    Hand hand(config);
    const Bytes status = hand.sync(20);
    const Bytes reply = hand.ask(0x50, {}, 500);
    for (const auto& [frame, places] : {std::pair(&status, &layout.status), std::pair(&reply, &layout.reply)})
      for (const auto& [at, option] : *places)
        EXPECT_EQ(frame->at(static_cast<std::size_t>(at)), held[static_cast<std::size_t>(option)]) << at;
  }
}

}  // namespace
}  // namespace sim::testing
