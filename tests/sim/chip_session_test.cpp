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

}  // namespace
}  // namespace sim::testing
