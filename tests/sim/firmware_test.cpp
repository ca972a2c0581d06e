// The user's own programs: what a released chip runs, and the download routine in one.
#include "sim/demo_firmware.h"
#include "sim/monitor_firmware.h"
#include "tests/sim/hand.h"

namespace sim::testing {
namespace {

const Line kToolLine{19200, 'o', 7, 2};

TEST(Application, EchoesAtItsOwnSettingsOnceTheChipIsReleased) {
  Hand hand(configFor(model("Ivy-H20S")));
  hand.chip.setApplication(std::make_unique<EchoApplication>(kToolLine));
  hand.sync();
  hand.ask(0x82, {}, 100);
  hand.setLine(kToolLine);
  hand.wire.clearIn(hand.now);
  hand.wire.write(Bytes{1, 2, 3}, hand.now);
  hand.now += 50 * kMillisecond;
  EXPECT_EQ(hand.wire.take(hand.now), (Bytes{1, 2, 3}));
}

TEST(Application, TalksAtTheFullRateOfTheLine) {
  Hand hand(configFor(model("Ivy-H20S")));
  hand.chip.setApplication(std::make_unique<ChatterApplication>(Line{115200, 'n'}));
  hand.setLine({115200, 'n'});
  hand.chip.runApplication(hand.now);
  hand.now += kSecond;
  const Bytes heard = hand.wire.take(hand.now);
  EXPECT_NEAR(static_cast<double>(heard.size()), 11520, 1);
  std::string expected;
  for (std::uint64_t n = 0; expected.size() < heard.size(); ++n) expected += ChatterApplication::lineText(n);
  EXPECT_EQ(std::string(heard.begin(), heard.end()), expected.substr(0, heard.size()));
}

TEST(Application, ResetsIntoTheBootFirmwareOnItsCommandOnly) {
  Hand hand(configFor(model("Ivy-H20S")));
  hand.chip.setApplication(std::make_unique<TriggerApplication>(kToolLine, Bytes{0x12, 0x34}));
  hand.chip.runApplication(0);
  EXPECT_TRUE(hand.ask(Bytes{0x12, 0x34}, 50).empty());  // not its settings
  hand.setLine(kToolLine);
  hand.ask(Bytes{0x12, 0x12}, 50);
  EXPECT_EQ(hand.chip.state(), ChipState::application);
  hand.ask(Bytes{0x34}, 50);
  EXPECT_EQ(hand.chip.state(), ChipState::syncing);
  hand.setLine({9600, 'e'});
  EXPECT_FALSE(hand.sync().empty());
}

TEST(Application, DumpsItsRegistersAndSendsAgainWhatWasNotAccepted) {
  MonitorConfig config;
  config.faults = {BadFrame::badSum, BadFrame::none};
  config.types = {1, 0};
  auto owned = std::make_unique<MonitorApplication>(Line{115200, 'n'}, config);
  const MonitorApplication& monitor = *owned;
  Hand hand(configFor(model("Cedar-H20R")));
  hand.chip.setApplication(std::move(owned));
  hand.setLine({115200, 'n'});
  hand.chip.runApplication(hand.now);
  const auto dump = [&](const Bytes& answer) {
    if (!answer.empty()) hand.wire.write(answer, hand.now);
    hand.now += 300 * kMillisecond;
    const Bytes got = hand.wire.take(hand.now);
    const auto at = std::find(got.begin(), got.end(), 0xA5);
    return Bytes(at, got.end());
  };
  const auto sumIsGood = [](const Bytes& f) {
    int sum = 0;
    for (std::size_t i = 2; i + 1 < f.size(); ++i) sum += f[i];
    return f.size() > 3 && f.size() == f[3] * 256U + f[4] + 2 && (sum & 255) == f.back();
  };
  EXPECT_FALSE(sumIsGood(dump({})));
  const Bytes again = dump({0xFE, 0xAA, 0x52, 0xFC});
  EXPECT_TRUE(sumIsGood(again));
  EXPECT_EQ(again.size(), 2U + 17 + 256);
  const Bytes next = dump({0xFE, 0xAA, 0x50, 0xFA});
  EXPECT_TRUE(sumIsGood(next));
  EXPECT_EQ(next[8], 0x80);
  dump({0xFE, 0xAA, 0x54, 0xFE});
  EXPECT_EQ(monitor.resends() * 100 + monitor.accepted() * 10 + monitor.continues(), 111);
}

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

TEST(DemoRoutine, TakesADownloadAfterTheUsersCommand) {
  DemoBench bench(demoConfig());
  EXPECT_TRUE(bench.command(0xB0).empty());
  bench.ask({0xAB, 0xCD}, 20);
  EXPECT_EQ(bench.demo.commands(), 1);
  bench.wire.open({115200, 'e'}, bench.now);
  EXPECT_EQ(bench.command(0xB0).size(), 8U);
  const Bytes number = bench.command(0xB5);
  EXPECT_EQ(number.at(6) * 256 + number.at(7), 0x4005);
  EXPECT_EQ(bench.command(0xB2).size(), 8U);
  const Bytes reply = bench.data(0xB3, 0, Bytes(128, 0xF0));
  EXPECT_EQ(reply.at(5) * 256 + reply.at(6), 128 * 0xF0);
  EXPECT_FALSE(bench.command(0xB1).empty());
  EXPECT_EQ(bench.demo.rounds(), 1);
  EXPECT_EQ(bench.demo.memory().bytes()[127], 0xF0);
  EXPECT_EQ(bench.demo.journal().violationText(), "");
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

TEST(DemoRoutine, FailsAsItIsTold) {
  DemoConfig config = demoConfig();
  config.command.clear();
  ASSERT_TRUE(setDemoFault(config, "silent", "B0:1"));
  ASSERT_TRUE(setDemoFault(config, "modelNumber", "0516"));
  ASSERT_TRUE(setDemoFault(config, "failsBlock", "0:1:silent"));
  EXPECT_FALSE(setDemoFault(config, "silent", "B0"));
  DemoBench bench(config);
  bench.wire.open({115200, 'e'}, 0);
  EXPECT_TRUE(bench.command(0xB0).empty());
  EXPECT_FALSE(bench.command(0xB0).empty());
  EXPECT_EQ(bench.command(0xB5).at(7), 0x16);
  bench.command(0xB2);
  EXPECT_TRUE(bench.data(0xB3, 0, Bytes(128, 1)).empty());
  EXPECT_FALSE(bench.data(0xB4, 0, Bytes(128, 1)).empty());
  EXPECT_EQ(bench.demo.journal().violationText(), "");
}

}  // namespace
}  // namespace sim::testing
