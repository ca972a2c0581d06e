// The terminal and the monitor with a talking firmware at the other end of a simulated line.
#include <gtest/gtest.h>

#include "comtool/com_tool.h"
#include "monitor/sfr_monitor.h"
#include "platform/virtual/virtual_world.h"
#include "sim/application.h"
#include "sim/monitor_firmware.h"
#include "tests/support/virtual_link.h"

namespace kvr::comtool {
namespace {

using platform::Millis;

// A chip that has left its boot firmware: only the user's program runs.
class RunningChip : public sim::Device {
 public:
  explicit RunningChip(sim::Application& program) : program_(program) {
    program_.say = [this](sim::Micros start, std::span<const std::uint8_t> bytes) {
      return say(start, program_.line(), bytes);
    };
  }
  std::optional<sim::Line> line() const override { return program_.line(); }
  void hear(sim::Micros end, const sim::Heard& heard) override { program_.hear(end, heard.byte); }
  std::optional<sim::Micros> nextDue() const override { return program_.nextDue(); }
  void advanceTo(sim::Micros now) override { program_.advanceTo(now); }

 private:
  sim::Application& program_;
};

struct Line {
  explicit Line(sim::Application& program, sim::WireConfig config = {.adapterLatency = 1000, .keepLog = false})
      : wire(config), chip(program) {
    wire.connect(&chip);
    combCommPort.setItems({"COM1"});
    tool.bytesReceived = [this](std::span<const std::uint8_t> bytes) { monitor.monitorScan(bytes); };
    monitor.write = [this](std::span<const std::uint8_t> bytes) { tool.writeAnswer(bytes); };
    monitor.openAndSend = [this](std::span<const std::uint8_t> bytes) { tool.send(bytes); };
    model.record.family = 4;
    monitor.fillSfrList();
    panel.com_Debug_Baud.setText(std::to_string(program.line().baud));
  }
  void open(sim::Application& program) {
    panel.comOpenCOM[0].press();
    program.start(loop.now().count());
  }

  platform::VirtualLoop loop;
  sim::Wire wire;
  RunningChip chip;
  support::VirtualLink link{loop, wire};
  platform::ScriptedDialogs dialogs{loop};
  platform::MemoryStore store;
  platform::MemoryFiles files;
  platform::VirtualClock clock{loop};
  engine::PortLease lease{loop, link};
  engine::Activity activity;
  options::UiLock lock;
  catalogue::SelectedModel model;
  ToolPanel panel;
  monitor::MonitorPanel monitorPanel;
  platform::ComboBox combCommPort{"combCommPort"};
  platform::Lamp imgOpen_sys{"imgOpen_sys"};
  ComTool tool{{loop, link, dialogs, store, files, clock}, lease, activity, lock, panel, {combCommPort, imgOpen_sys}};
  monitor::SfrMonitor monitor{loop, monitorPanel, model, lock};
};

TEST(TalkingFirmware, ChatterAtFullLineRateAppearsWholeAndInOrder) {
  sim::ChatterApplication chatter({256000, 'n'});
  Line line(chatter);
  line.open(chatter);
  line.loop.runFor(Millis(5000));
  const std::string shown = line.panel.texReceive.text();
  ASSERT_GT(shown.size(), 120000U);
  std::string expected;
  for (std::uint64_t n = 0; expected.size() < shown.size(); ++n) expected += sim::ChatterApplication::lineText(n);
  EXPECT_EQ(shown, expected.substr(0, shown.size()));
  EXPECT_EQ(line.panel.labReceiveCount.caption(), "Receive counter:" + std::to_string(shown.size()));
}

TEST(TalkingFirmware, AnEchoBringsBackTextHexadecimalAndKeys) {
  sim::EchoApplication echo({9600, 'n'});
  Line line(echo);
  line.open(echo);
  line.tool.sendArea().sendToolText("text ", false);
  line.tool.sendArea().sendToolText("0a 4F4b", true);
  line.panel.texReceive.userKey('!');
  line.loop.runFor(Millis(200));
  EXPECT_EQ(line.panel.texReceive.text(), "text \nOK!");
}

TEST(TalkingFirmware, AnUnpluggedAdapterEndsARepeatedSend) {
  sim::EchoApplication echo({115200, 'n'});
  Line line(echo);
  line.open(echo);
  line.panel.comAutoSend.press();
  line.loop.runFor(Millis(1500));
  line.link.unplug();
  line.loop.runFor(Millis(5000));
  EXPECT_EQ(line.panel.comOpenCOM[0].caption(), "Open COM");
  EXPECT_EQ(line.panel.comAutoSend.caption(), "Repeat Send");
  EXPECT_EQ(line.dialogs.shown.size(), 1U);
}

TEST(TalkingFirmware, BadRecordsAreAskedForAgainAndAllFourListsFill) {
  using sim::BadFrame;
  sim::MonitorApplication dumps({115200, 'n'}, {.faults = {BadFrame::badSum, BadFrame::cutShort, BadFrame::none,
                                                           BadFrame::tooLong, BadFrame::none, BadFrame::unknownType}});
  Line line(dumps);
  line.open(dumps);
  line.loop.runFor(Millis(60000));
  EXPECT_GE(dumps.resends(), 3);
  EXPECT_GT(dumps.accepted(), 50);
  EXPECT_EQ(dumps.strangeAnswers(), 0);
  for (const auto* list : {&line.monitorPanel.lst_debug2, &line.monitorPanel.lst_debug4}) {
    EXPECT_EQ(list->rows().back().size(), 28U);
    EXPECT_NE(list->rows().back().substr(26), "  ");
  }
  EXPECT_EQ(line.monitorPanel.lst_debug4.rows()[0].substr(0, 4), "0200");
  EXPECT_GT(line.monitorPanel.lst_debug1.rows()[0].size(), 17U);
}

TEST(TalkingFirmware, ANoisyLineNeverHangsTheMonitor) {
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    sim::MonitorApplication dumps({115200, 'n'}, {.seed = seed});
    sim::WireConfig noisy{.seed = seed, .adapterLatency = 2000, .keepLog = false};
    noisy.random = sim::RandomFaults{.chance = 0.2};
    Line line(dumps, noisy);
    line.panel.che_KeepNewest.setValue(true);
    line.open(dumps);
    int before = 0;
    for (int minute = 0; minute < 3; ++minute) {
      line.loop.runFor(Millis(60000));
      EXPECT_GT(dumps.accepted(), before + 5) << seed;
      before = dumps.accepted();
    }
  }
}

TEST(TalkingFirmware, ContinueReachesTheFirmwareAndCounts) {
  sim::MonitorApplication dumps({115200, 'n'}, {});
  Line line(dumps);
  line.open(dumps);
  line.monitorPanel.comDebugContinue[1].press();
  line.loop.runFor(Millis(100));
  EXPECT_EQ(dumps.continues(), 1);
  EXPECT_EQ(line.panel.labSendCount.caption(), "Send counter:4");
}

}  // namespace
}  // namespace kvr::comtool
