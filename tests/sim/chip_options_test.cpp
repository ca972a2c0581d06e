#include <map>

#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

constexpr std::uint8_t kClock[4] = {0x00, 0xA8, 0xC0, 0x00};  // 11059200 Hz

OptionBytes someOptions() {
  OptionBytes options;
  for (std::size_t i = 0; i < options.size(); ++i) options[i] = static_cast<std::uint8_t>(0x91 + 7 * i);
  return options;
}

Bytes longPayload(const OptionBytes& options, bool hazel) {
  Bytes p = {options[2], options[3], options[8], options[10], options[hazel ? 0 : 11]};
  p.insert(p.end(), kClock, kClock + 4);
  p.insert(p.end(), options.begin(), options.end());
  p.insert(p.end(), kClock, kClock + 4);
  p.insert(p.end(), 3, 0xFF);
  return p;
}

Bytes latePayload(const OptionBytes& options) {
  Bytes p(options.begin(), options.end());
  p.insert(p.end(), kClock, kClock + 4);
  return p;
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

class OptionLayouts : public ::testing::TestWithParam<Layout> {};

TEST_P(OptionLayouts, AreStoredAndReportedWhereThatFirmwareKeepsThem) {
  const Layout& layout = GetParam();
  ChipConfig config = configFor(model(layout.model));
  config.firmware = layout.firmware;
  config.directStatus = true;
  Hand hand(config);
  hand.sync(20);
  const int family = config.row->family;
  const OptionBytes wanted = someOptions();
  Bytes payload = family <= 2 || family > 10 ? Bytes{wanted[1], 0, 0, wanted[8]} : longPayload(wanted, family == 6);
  if ((family >= 7 && family <= 10) || family == 17) payload = latePayload(wanted);
  if (family == 18) {
    const Bytes frame = hand.frame(0x8D, latePayload(wanted));
    Bytes wide(frame.begin(), frame.end() - 2);  // two bytes of sum although the family's other frames have one
    wide[4] = 27;
    int sum = 0;
    for (std::size_t i = 2; i < wide.size(); ++i) sum += wide[i];
    wide.insert(wide.end(), {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum), 0x16});
    EXPECT_EQ(hand.ask(wide, 500).at(3), 0x80);
  } else {
    EXPECT_EQ(hand.ask(0x8D, payload, 500).at(3), config.row->extSession ? 0x50 : 0x80);
  }
  EXPECT_EQ(hand.chip.optionWrites(), 1) << hand.chip.violationText();
  const Bytes reply = hand.ask(0x50, {}, 500);
  for (const auto& [at, option] : layout.reply)
    EXPECT_EQ(reply.at(static_cast<std::size_t>(at)), wanted[static_cast<std::size_t>(option)]) << "reply " << at;
  hand.chip.powerOn(hand.now);
  const Bytes status = hand.sync(20);
  for (const auto& [at, option] : layout.status)
    EXPECT_EQ(status.at(static_cast<std::size_t>(at)), wanted[static_cast<std::size_t>(option)]) << "status " << at;
}

INSTANTIATE_TEST_SUITE_P(Families, OptionLayouts, ::testing::ValuesIn(kLayouts));

TEST(SimulatedOptions, RefuseListsThatContradictEachOther) {
  Hand hand(configFor(model("Gum-H20")));
  hand.sync();
  Bytes payload = longPayload(someOptions(), false);
  payload[9 + 8] ^= 1;
  hand.ask(0x8D, payload, 500);
  EXPECT_NE(hand.chip.violationText().find("two lists differ"), std::string::npos);
}

TEST(SimulatedOptions, CanRefuseToStickOrAskForAnotherAttempt) {
  ChipConfig config = configFor(model("Cedar-H20R"));
  ASSERT_TRUE(setChipFault(config, "answersOptionsWith81", "1"));
  ASSERT_TRUE(setChipFault(config, "optionsDoNotStick", ""));
  EXPECT_FALSE(setChipFault(config, "noSuchFault", ""));
  EXPECT_FALSE(setChipFault(config, "failsBlock", "3"));
  Hand hand(config);
  hand.sync();
  const OptionBytes before = hand.chip.options();
  EXPECT_EQ(hand.ask(0x8D, {0x10, 0, 0, 0xFF}, 500).at(3), 0x81);
  EXPECT_EQ(hand.ask(0x8D, {0x10, 0, 0, 0xFF}, 500).at(3), 0x80);
  EXPECT_EQ(hand.chip.options(), before);
}

}  // namespace
}  // namespace sim::testing
