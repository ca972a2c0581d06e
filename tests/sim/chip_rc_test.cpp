#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

Bytes measurePayload(const Bytes& status, int delay, const std::vector<std::pair<int, int>>& points) {
  Bytes p(status.begin() + 54, status.begin() + 61);
  p.insert(p.end(), {0xFF, static_cast<std::uint8_t>(delay), 0xFF, static_cast<std::uint8_t>(points.size())});
  for (const auto& [code, fine] : points)
    p.insert(p.end(), {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(fine), 2, 0});
  return p;
}

void measure(Hand& hand, const Bytes& payload, int pulses) {
  hand.wire.write(hand.frame(0x65, payload), hand.now);
  hand.wait(20 + static_cast<int>(hand.wire.drainedAt() - hand.now) / 1000);
  for (; pulses > 0; pulses -= 8) hand.ask(Bytes(static_cast<std::size_t>(std::min(pulses, 8)), 0x7F), 10);
  hand.wait(100);
}

Bytes contact(Hand& hand) {
  hand.sync(20);
  hand.wire.write(hand.frame(0x80, {}), hand.now);
  hand.wait(30);
  hand.wire.write(Bytes(6, 0x7F), hand.now);
  hand.wait(200);
  const Bytes status = hand.lastFrame();
  EXPECT_EQ(hand.ask(0x50, hand.generic(), 300).at(3), 0x8F);
  return status;
}

const std::vector<std::pair<int, int>> kFirstRound = {{88, 0}, {88, 128}, {88, 128}, {88, 255}, {88, 0}, {88, 128}};

TEST(SimulatedOscillator, HoldsWrongMeasureFramesAgainstTheHost) {
  struct Wrong {
    const char* what;
    int delay, pulses;
    std::size_t at;
  };
  for (const Wrong& wrong : {Wrong{"status tail", 6, 22, 3}, Wrong{"fixed bytes", 6, 22, 7}, Wrong{"delay", 7, 22, 0},
                             Wrong{"points", 6, 22, 12}, Wrong{"point 0", 6, 22, 13}, Wrong{"pulses", 6, 23, 0}}) {
    Hand hand(configFor(model("Pine-H0FE")));
    Bytes payload = measurePayload(contact(hand), wrong.delay, kFirstRound);
    if (wrong.at > 0) payload[wrong.at] ^= 1;
    measure(hand, payload, wrong.pulses);
    hand.ask(0x69, hand.generic(), 100);
    EXPECT_NE(hand.chip.violationText().find(wrong.what), std::string::npos) << wrong.what << hand.chip.violationText();
  }
}

}  // namespace
}  // namespace sim::testing
