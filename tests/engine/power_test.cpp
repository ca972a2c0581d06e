// The target's supply by a modem line: the setting as text, and fixtures that feed the simulated chip through it.
#include <gtest/gtest.h>

#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr {
namespace {

using engine::PowerSwitch;
using engine::powerSwitchOf;
using platform::Millis;
using platform::ModemLine;
using By = sim::SupplySwitch::By;

TEST(PowerSwitch, IsWrittenAsTextAndReadBack) {
  EXPECT_EQ(powerSwitchOf("none"), PowerSwitch{});
  EXPECT_EQ(powerSwitchOf("dtr"), (PowerSwitch{.line = ModemLine::Dtr}));
  EXPECT_EQ(powerSwitchOf("RTS:Low"), (PowerSwitch{.line = ModemLine::Rts, .onWhenSet = false}));
  EXPECT_EQ(powerSwitchOf("rts:50"), (PowerSwitch{.line = ModemLine::Rts, .off = Millis(50)}));
  for (const auto* text : {"none", "dtr:500", "rts:low:50", "dtr:low:5000"}) {
    const auto power = powerSwitchOf(text);
    ASSERT_TRUE(power) << text;
    EXPECT_EQ(textOf(*power), text);
  }
  for (const auto* text : {"", "cts", "dtr:", "dtr:high", "dtr:49", "dtr:5001", "dtr:low:", "dtr:low:x", "dtr:-200",
                           "dtr:200:low", "dtr:200 ", "none:200", ":200", "dtr:99999999999"})
    EXPECT_FALSE(powerSwitchOf(text)) << text;
}

// A chip that has power only through the line, which runs its own program by then.
struct Fixture : support::EngineBench {
  explicit Fixture(By by, bool high = true, const char* name = "Ivy-HF0S") {
    select(name);
    bauds("9600", "115200");
    loadCode(5, 1500);
    panel.cobPowerLine.setListIndex(by == By::dtr ? 1 : 2);
    panel.cobPowerLevel.setListIndex(high ? 0 : 1);
    put(by, high);
  }
  void put(By by, bool high) {
    auto config = sim::configFor(*catalogue::findByName(model.record.name));
    config.supply = {.by = by, .onWhenSet = high};
    config.times.listen = 200 * sim::kMillisecond;
    insertChip(config, Millis(0));
  }
  // The times at which the supply went, and how long it stayed away.
  std::vector<Millis> pauses(By by, bool high) const {
    std::vector<Millis> found;
    std::optional<sim::Micros> gone;
    for (const auto& move : wire.lineMoves()) {
      const bool on = (by == By::dtr ? move.lines.dtr : move.lines.rts) == high;
      if (on && gone) found.push_back(std::chrono::duration_cast<Millis>(platform::Micros(move.at - *gone)));
      gone = on ? std::nullopt : std::optional(gone.value_or(move.at));
    }
    return found;
  }
};

TEST(Power, IsSwitchedAtThePressAndAtEachRound) {
  for (const By by : {By::dtr, By::rts})
    for (const bool high : {true, false})
      for (const char* model : {"Ivy-HF0S", "Rowan-H20", "Elm-L14A"}) {
        SCOPED_TRACE(std::string(model) + (by == By::dtr ? " DTR " : " RTS ") + (high ? "high" : "low"));
        Fixture fixture(by, high, model);
        fixture.panel.txtPowerOff.setText("300");
        for (int round = 1; round <= 2; ++round) {
          ASSERT_TRUE(fixture.program(Millis(60000)));
          EXPECT_TRUE(fixture.passed()) << fixture.text();
        }
        EXPECT_EQ(fixture.chip->violationText(), "");
        EXPECT_EQ(fixture.flashDifference(), "");
        EXPECT_EQ(fixture.chip->sessions(), 2);
        const auto pauses = fixture.pauses(by, high);
        EXPECT_EQ(std::vector(pauses.end() - 1, pauses.end()), (std::vector{Millis(300)}));
        EXPECT_EQ(fixture.notAtRest(), "");
      }
  Fixture repeated(By::dtr);
  repeated.panel.comDalay_ReDownLoad.setListIndex(1);
  repeated.loop.after(Millis(20000), [&] { repeated.downloads.stop(); });
  ASSERT_TRUE(repeated.press(repeated.panel.comDownload[1]));
  EXPECT_GT(repeated.chip->sessions(), 2);
  EXPECT_EQ(repeated.chip->violationText(), "");
}

TEST(Power, StopWhileItIsOffLeavesTheTargetFed) {
  Fixture fixture(By::rts, false);
  fixture.panel.txtPowerOff.setText("5000");
  fixture.pressAfter(Millis(3000), fixture.panel.comStop_Download);
  ASSERT_TRUE(fixture.program());
  EXPECT_TRUE(fixture.says("Operation stopped.")) << fixture.text();
  EXPECT_FALSE(fixture.wire.lines().rts);
  EXPECT_EQ(fixture.chip->violationText(), "");
  EXPECT_EQ(fixture.notAtRest(), "");
}

// Capacitors that feed the chip for longer than the supply is off, and a port without the line: the operator is asked
// for the power as ever.
TEST(Power, ThatDoesNotComeToTheChipLeavesTheRunWaiting) {
  Fixture slow(By::dtr);
  ASSERT_TRUE(slow.program());
  ASSERT_TRUE(slow.passed());
  slow.chip->config().supply.holdUp = 600 * sim::kMillisecond;
  EXPECT_FALSE(slow.program(Millis(20000)));
  EXPECT_TRUE(slow.says("please supply target MCU power"));
  slow.panel.txtPowerOff.setText("700");
  ASSERT_TRUE(slow.program());
  EXPECT_TRUE(slow.passed()) << slow.text();

  Fixture bare(By::dtr);
  bare.link.hasModemLines = false;
  bare.insertChip(Millis(1000));
  ASSERT_TRUE(bare.program());
  EXPECT_TRUE(bare.passed() && bare.says("no DTR line")) << bare.text();
}

TEST(Power, IsNotMovedByTheTerminalNorByAnotherSwitchOfTheLine) {
  support::FormBench bench;
  bench.form.download.cobPowerLine.userPick(1);
  bench.form.download.cobPowerLevel.userPick(1);
  const auto moves = [&bench] {
    const auto& all = bench.wire.lineMoves();
    return std::count_if(all.begin(), all.end(), [](const auto& move) { return move.lines.dtr; });
  };
  for (const bool ticked : {true, false, true}) {
    bench.form.tool.che_DTR.setValue(ticked);
    bench.form.comTool.takePort();
    ASSERT_TRUE(bench.link.isOpen());
    bench.form.tool.che_DTR.userSet(!ticked);
    bench.form.tool.comOpenCOM[0].press();
    EXPECT_FALSE(bench.link.isOpen());
  }
  EXPECT_EQ(moves(), 0);
  bench.form.download.cobPowerLine.userPick(0);
  bench.form.tool.che_DTR.setValue(true);
  bench.form.comTool.takePort();
  EXPECT_EQ(moves(), 1) << "the line is free again";
}

TEST(Power, TheBoxShowsTheTimeThatARunTakes) {
  support::EngineBench bench;
  EXPECT_FALSE(bench.panel.txtPowerOff.visible());
  bench.panel.cobPowerLine.userPick(2);
  EXPECT_TRUE(bench.panel.txtPowerOff.visible());
  const auto leaves = [&bench](const char* text) {
    bench.panel.txtPowerOff.userType(text);
    bench.panel.txtPowerOff.userLeave();
    return bench.panel.txtPowerOff.text();
  };
  EXPECT_EQ(leaves("1200"), "1200");
  EXPECT_EQ(leaves("7"), "50");
  EXPECT_EQ(leaves("60000"), "5000");
  EXPECT_EQ(leaves("x"), "50");
  EXPECT_EQ(download::readPower(bench.panel), (PowerSwitch{.line = ModemLine::Rts, .off = Millis(50)}));
}

}  // namespace
}  // namespace kvr
