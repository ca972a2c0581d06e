#include "sim/wire.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

// Hears, and says back what it is told to.
class Listener : public Device {
 public:
  std::optional<Line> line() const override { return settings; }
  void hear(Micros end, const Heard& heard) override {
    ends.push_back(end);
    bytes.push_back(heard.byte);
    damaged = damaged || heard.damage != Damage::none;
    if (heard.byte == 0x16) say(end, settings, answer);
  }
  std::optional<Micros> nextDue() const override { return std::nullopt; }
  void advanceTo(Micros) override {}
  void disturbed(Micros) override { ++disturbances; }

  Line settings{9600, 'e'};
  std::vector<std::uint8_t> answer = std::vector<std::uint8_t>(3, 7);
  std::vector<Micros> ends;
  std::vector<std::uint8_t> bytes;
  bool damaged = false;
  int disturbances = 0;
};

using Bytes = std::vector<std::uint8_t>;

// The host's end of the wire is open, and the listener is at the other one.
struct Connected {
  explicit Connected(Line line = {9600, 'e'}, const WireConfig& config = {}) : wire(config) {
    wire.connect(&listener);
    wire.open(line, 0);
  }
  Listener listener;
  Wire wire;
};

TEST(Wire, CarriesBytesBothWaysInTheirTrueTime) {
  Connected pair;
  auto& [listener, wire] = pair;
  wire.write(Bytes{9, 9}, 0);
  wire.write(Bytes{0x16}, 100);  // has to wait for its turn
  EXPECT_EQ(wire.pendingOut(2000), 2);
  EXPECT_EQ(wire.drainedAt(), 3438);  // three bytes of 11 bits
  EXPECT_EQ(wire.available(3438 + 1145), 0);
  EXPECT_EQ(listener.ends, (std::vector<Micros>{1146, 2292, 3438}));
  EXPECT_EQ(wire.nextDue(), 3438 + 1146);
  EXPECT_EQ(wire.take(3438 + 3438, 2), (Bytes{7, 7}));
  EXPECT_EQ(wire.take(3438 + 3438), Bytes{7});
  EXPECT_EQ(wire.nextDue(), std::nullopt);
  EXPECT_FALSE(listener.damaged);
  EXPECT_EQ(timeOnWire(wire.log(), 0, kSecond), 2 * 3438);
  EXPECT_EQ(timeOnWire(wire.log(), 1000, 4000), 3000);
}

TEST(Wire, GarblesWhatTheEndsDisagreeOn) {
  for (const Line& line : {Line{9600, 'n'}, Line{9600, 'o'}, Line{9100, 'e'}, Line{19200, 'e'}}) {
    Connected pair(line);
    auto& [listener, wire] = pair;
    wire.write(Bytes{1, 2, 3, 4, 5, 6}, 0);
    wire.advanceTo(kSecond);
    EXPECT_TRUE(listener.damaged);
    EXPECT_NE(listener.bytes, (Bytes{1, 2, 3, 4, 5, 6}));
  }
  EXPECT_TRUE(canRead({9600, 'e'}, {9984, 'e'}));  // four percent are read
}

TEST(Wire, DropsWhatHasNotBegunWhenThePortIsClosedAndWhatComesWhileItIs) {
  Connected pair;
  auto& [listener, wire] = pair;
  wire.write(Bytes{1, 2, 0x16}, 0);
  wire.close(1500);
  wire.advanceTo(kSecond);
  EXPECT_EQ(listener.bytes, (Bytes{1, 2}));
  wire.open({9600, 'e'}, kSecond);
  wire.write(Bytes{0x16}, kSecond);
  wire.close(kSecond + 1200);
  EXPECT_EQ(wire.available(2 * kSecond), 0);
  wire.unplug(2 * kSecond);
  EXPECT_FALSE(wire.open({9600, 'e'}, 2 * kSecond));
}

TEST(Wire, DoesToAUnitWhatThePlanSaysAndTellsTheDevice) {
  std::vector<Micros> ends;
  const auto heardWith = [&ends](Fault fault) {
    fault.unit = 1;
    Connected pair({9600, 'e'}, {.faults = {fault}});
    auto& [listener, wire] = pair;
    for (const Bytes& unit : {Bytes{1}, Bytes{2, 3, 4}, Bytes{5}}) wire.write(unit, 0);
    wire.advanceTo(kSecond);
    EXPECT_EQ(listener.disturbances, 1);
    EXPECT_EQ(wire.log().size(), 3U);
    EXPECT_TRUE(wire.log()[1].faulted);
    ends = listener.ends;
    return listener.bytes;
  };
  using enum FaultKind;
  constexpr Direction out = Direction::hostToDevice;
  EXPECT_EQ(heardWith({out, 0, lose}), (Bytes{1, 5}));
  EXPECT_EQ(heardWith({out, 0, flip, 1, 0x80}), (Bytes{1, 2, 0x83, 4, 5}));
  EXPECT_EQ(heardWith({out, 0, dropByte, 2}), (Bytes{1, 2, 3, 5}));
  EXPECT_EQ(heardWith({out, 0, twice}), (Bytes{1, 2, 3, 4, 2, 3, 4, 5}));
  EXPECT_EQ(heardWith({out, 0, delay, 0, 0, 50 * kMillisecond}), (Bytes{1, 2, 3, 4, 5}));
  EXPECT_EQ(ends[1], 2292 + 50 * kMillisecond);
  EXPECT_EQ(heardWith({out, 0, FaultKind::split, 2, 0, 7 * kMillisecond}), (Bytes{1, 2, 3, 4, 5}));
  EXPECT_NEAR(static_cast<double>(ends[3] - ends[2]), 8146, 2);
}

}  // namespace
}  // namespace sim
