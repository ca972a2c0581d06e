#include <cmath>

#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

constexpr int kLoop9600 = 2068;

Bytes measurePayload(const Bytes& status, int delay, const std::vector<std::pair<int, int>>& points) {
  Bytes p(status.begin() + 54, status.begin() + 61);
  p.insert(p.end(), {0xFF, static_cast<std::uint8_t>(delay), 0xFF, static_cast<std::uint8_t>(points.size())});
  for (const auto& [code, fine] : points)
    p.insert(p.end(), {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(fine), 2, 0});
  return p;
}

// Frequencies by what the chip counted; empty when it did not answer.
std::vector<double> measure(Hand& hand, const Bytes& payload, int pulses) {
  hand.wire.write(hand.frame(0x65, payload), hand.now);
  hand.wait(20 + static_cast<int>(hand.wire.drainedAt() - hand.now) / 1000);
  const std::size_t said = hand.wire.log().size();
  for (; pulses > 0; pulses -= 8) hand.ask(Bytes(static_cast<std::size_t>(std::min(pulses, 8)), 0x7F), 10);
  hand.wait(100);
  const auto answer = std::find_if(hand.wire.log().begin() + static_cast<std::ptrdiff_t>(said), hand.wire.log().end(),
                                   [](const Unit& unit) { return unit.direction == Direction::deviceToHost; });
  if (answer == hand.wire.log().end()) return {};
  const Bytes reply = hand.lastFrame();
  EXPECT_EQ(reply.at(3), 0x65);
  std::vector<double> found;
  for (std::size_t i = 0; i < reply.at(14); ++i) {
    const int count = (reply.at(4 * i + 17) * 256 + reply.at(4 * i + 18)) * 8;
    found.push_back((count + 6.0) * kLoop9600);
  }
  return found;
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

TEST(SimulatedOscillator, IsMeasuredToTheResolutionOfTheCount) {
  Hand hand(configFor(model("Pine-H0FE")));
  const Bytes status = contact(hand);
  const auto found = measure(hand, measurePayload(status, 6, kFirstRound), 22);
  ASSERT_EQ(found.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i)
    EXPECT_NEAR(found[i], hand.chip.oscillator().frequency(kFirstRound[i].first, kFirstRound[i].second),
                4.5 * kLoop9600);
  std::vector<std::pair<int, int>> scan;
  for (int i = 0; i < 11; ++i) scan.emplace_back(88, 60 + i);
  EXPECT_EQ(measure(hand, measurePayload(status, 22, scan), 42).size(), 11U);
  EXPECT_EQ(hand.chip.violationText(), "");
}

TEST(SimulatedOscillator, IsMovedByTheBaudFrameAndAtTheNextPowerUpByTheStoredTrim) {
  Hand hand(configFor(model("Pine-H0FE")));
  contact(hand);
  const double base = hand.chip.oscillator().frequency(152, 64);
  const int divider = static_cast<int>(std::lround(base / 57600 / 5));
  const int timer = 65536 - 20000;
  hand.wire.write(
      hand.frame(0x8E, {152, 64, 5, static_cast<std::uint8_t>(256 - divider), 53, static_cast<std::uint8_t>(timer >> 8),
                        static_cast<std::uint8_t>(timer), 129, 12, 0xFF, 0}),
      hand.now);
  hand.setLine({57600, 'e'});
  EXPECT_EQ(hand.wait(200).at(3), 0x84);
  EXPECT_EQ(hand.chip.clockHz(), base);
  Bytes options(16, 0xFF);
  options[3] = 24;
  options[4] = 77;
  const auto clock = static_cast<std::uint32_t>(hand.chip.oscillator().frequency(88, 128));
  for (int shift = 24; shift >= 0; shift -= 8) options.push_back(static_cast<std::uint8_t>(clock >> shift));
  EXPECT_EQ(hand.ask(0x8D, options, 100).at(3), 0x50);
  EXPECT_EQ(hand.chip.applicationClockHz(), hand.chip.oscillator().frequency(24, 77));
  hand.chip.powerOn(hand.now);
  hand.wait(1);
  EXPECT_EQ(hand.chip.clockHz(), hand.chip.oscillator().frequency(24, 77));
  // The frames in between were left out, and that is all that was wrong.
  EXPECT_EQ(hand.chip.violations().size(), 1U) << hand.chip.violationText();
}

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

TEST(SimulatedOscillator, DiffersFromChipToChipWithinItsSpread) {
  double slowest = 1e9, fastest = 0;
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    RcSetting setting;
    setting.spread = 0.25;
    const RcOscillator oscillator(setting, seed);
    slowest = std::min(slowest, oscillator.frequency(88, 128));
    fastest = std::max(fastest, oscillator.frequency(88, 128));
    for (int band = 0; band < 4; ++band)
      for (int fine = 0; fine < 255; ++fine)
        ASSERT_LT(oscillator.frequency(band * 64 + 24, fine), oscillator.frequency(band * 64 + 24, fine + 1));
  }
  EXPECT_NEAR(slowest, 0.75 * 12.8e6, 0.6e6);
  EXPECT_NEAR(fastest, 1.25 * 12.8e6, 0.6e6);
}

}  // namespace
}  // namespace sim::testing
