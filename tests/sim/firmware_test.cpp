// The download routine in a user's program.
#include "sim/demo_firmware.h"
#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

class DemoBench {
 public:
  explicit DemoBench(DemoConfig config) : demo(std::move(config)) {
    wire.connect(&demo);
    demo.powerOn(0);
    wire.open({9600, 'n'}, 0);
  }
  Bytes ask(Bytes bytes, int milliseconds) {
    wire.clearIn(now);
    wire.write(bytes, now);
    now += milliseconds * kMillisecond;
    return wire.take(now);
  }
  Bytes command(int command) { return ask(closed({0x5A, 0xA5, 0, 8, static_cast<std::uint8_t>(command)}), 300); }
  Bytes data(int command, int address, Bytes bytes) {
    const auto byte = [](std::size_t v) { return static_cast<std::uint8_t>(v); };
    const auto at = static_cast<std::size_t>(address);
    Bytes frame = {0x5A,          0xA5,     0, byte(bytes.size() + 14), byte(static_cast<std::size_t>(command)), 0, 0,
                   byte(at >> 8), byte(at), 0, byte(bytes.size())};
    frame.insert(frame.end(), bytes.begin(), bytes.end());
    return ask(closed(frame), 100);
  }
  static Bytes closed(Bytes frame) {
    int sum = 0;
    for (const std::uint8_t b : frame) sum += b;
    frame.insert(frame.end(), {static_cast<std::uint8_t>(sum >> 8), static_cast<std::uint8_t>(sum), 0x16});
    return frame;
  }
  DemoFirmware demo;
  Wire wire;
  Micros now = 0;
};

DemoConfig demoConfig() {
  DemoConfig config;
  config.row = &model("Cedar-H80D");
  config.downloadLine = {115200, 'e'};
  config.command = {0xAB, 0xCD};
  return config;
}

TEST(DemoRoutine, HoldsAgainstTheHostWhatTheHostDoesWrong) {
  DemoBench bench(demoConfig());
  bench.ask({0xAB, 0xCD}, 20);
  const auto found = [&](const char* text) {
    return bench.demo.journal().violationText().find(text) != std::string::npos;
  };
  bench.command(0xB0);
  EXPECT_TRUE(found("a frame at 9600"));
  bench.wire.open({115200, 'e'}, bench.now);
  bench.command(0xB5);
  EXPECT_TRUE(found("before the connection"));
  bench.data(0xB3, 0, Bytes(128, 1));
  EXPECT_TRUE(found("nothing was erased"));
  bench.data(0xB3, 500, Bytes(64, 1));
  EXPECT_TRUE(found("crosses a block"));
  bench.data(0xB3, 63500, Bytes(12, 1));
  EXPECT_TRUE(found("boot block"));
  bench.ask({0x5A, 0xA5, 0, 8, 0xB0, 0, 0, 0x16}, 50);
  EXPECT_TRUE(found("bad length, sum or end"));
}

}  // namespace
}  // namespace sim::testing
