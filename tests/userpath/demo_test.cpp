// Downloads through a simulated routine in the user's program.
#include <gtest/gtest.h>

#include "tests/userpath/userpath_bench.h"
#include "userpath/demo_models.h"

namespace {

using namespace kvr::userpath;

TEST(Demo, ProgramsEveryModelThatTellsItsNumber) {
  int known = 0;
  for (int number = 0; number < 0x10000; ++number) {
    const DemoModel told = demoModelOf(static_cast<std::uint16_t>(number));
    if (told.name.empty()) continue;
    ++known;
    SCOPED_TRACE(told.name);
    const auto* record = kvr::catalogue::findByName(told.name);
    EXPECT_TRUE(!record || record->code == told.code);
    for (const char* name : {"Cedar-H10R", "Cedar-H20R", "Cedar-H38R", "Cedar-H40D", "Cedar-H80D", "Cedar-HF8D"}) {
      auto config = UserPathBench::configFor(name);
      config.modelNumber = number;
      DemoBench bench(config);
      bench.select(name);
      ASSERT_TRUE(bench.press(bench.page.com_Demo_DownLoad));
      const bool fits = bench.model.record.code == told.code;
      EXPECT_EQ(bench.lines("Program OK."), fits ? 1 : 0) << name << bench.text();
      EXPECT_EQ(bench.lines("MCU Type is incorrect. please select correct MCU type and open the file again."),
                fits ? 0 : 1);
      bench.loop.runFor(Millis(1000));  // beeps are queued
      EXPECT_EQ(bench.dialogs.beeps.size(), fits ? 1u : 3u);
      EXPECT_EQ(bench.notAtRest(), "");
      EXPECT_TRUE(bench.firmware.violations().empty()) << bench.firmware.violations().front().text;
      if (!fits) continue;
      EXPECT_TRUE(bench.holdsCode());
      EXPECT_EQ(bench.firmware.finishes(), 2);
    }
  }
  EXPECT_EQ(known, 18);
}

TEST(Demo, SendsTheCommandAtTheSettingsOfItsBoxes) {
  struct {
    const char *baud, *parity, *data, *stop;
    sim::Line line;
    bool possible = true;
  } const rows[] = {{"2400", "None", "8", "1", {2400, 'n', 8, 1}},
                    {"115200", "Even", "7", "2", {115200, 'e', 7, 2}},
                    {"9600", "Odd", "5", "1.5", {9600, 'o', 5, 1.5}},
                    {"19200", "Odd", "8", "1.5", {19200, 'o', 8, 1.5}, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.baud);
    auto config = UserPathBench::configFor("Cedar-H20R");
    config.command = {0x12, 0x05, 0x1F};
    config.commandLine = row.line;
    DemoBench bench(config);
    bench.page.che_Demo_DownLoad.setValue(true);
    bench.page.txt_DEMO_UserCode.setText("12 05 1f");
    UserPathBench::setLine(bench.page.demoCommandLine(), row.baud, row.parity, row.data, row.stop);
    ASSERT_TRUE(bench.press(bench.page.com_Demo_DownLoad));
    EXPECT_EQ(bench.firmware.commands(), row.possible ? 1 : 0);
    EXPECT_EQ(bench.lines(row.possible ? "Program OK." : "Open COM port failed!"), 1);
    EXPECT_EQ(bench.notAtRest(), "");
  }
}

TEST(Demo, RepeatsUntilStopWithANumberOfItsOwnInEachChip) {
  for (const char* delay : {"0", "3"}) {
    DemoBench bench;
    bench.panel.comDalay_ReDownLoad.setText(delay);
    bench.counterPanel.cheAuto_Increase.setValue(true);
    for (std::size_t box = 0; const char* text : {"0103", "4", "100", "5"})
      bench.counterPanel.texAuto_Increase[box++].setText(text);
    bench.counterPanel.optAuto_Increase[0].setValue(true);
    std::vector<int> numbers;
    std::vector<kvr::platform::Instant> ends;
    std::function<void()> watch = [&] {
      if (bench.firmware.rounds() > static_cast<int>(numbers.size())) {
        numbers.push_back(bench.firmware.memory().bytes()[0x103]);
        ends.push_back(bench.loop.now());
      }
      if (numbers.size() == 3)
        bench.page.com_Demo_Stop.press();
      else
        bench.loop.after(Millis(5), watch);
    };
    bench.loop.after(Millis(5), watch);
    ASSERT_TRUE(bench.press(bench.page.com_Demo_Re_DownLoad));
    EXPECT_EQ(numbers, (std::vector<int>{100, 105, 110})) << delay;
    const auto gap = ends[1] - ends[0];
    EXPECT_EQ(gap > std::chrono::seconds(4), *delay == '3') << gap.count();
    EXPECT_EQ(bench.lines("Operation stopped. "), 1);
    EXPECT_EQ(bench.notAtRest(), "");
  }
}

TEST(Demo, EndsInWordsAtEveryStep) {
  constexpr auto reading = "Reading MCU Option failed. (End: ", erasing = "Erasing MCU flash failed. (End: ",
                 programming = "Programing failed. (End: ", model = "MCU Type is incorrect. please select";
  struct {
    const char* name;
    const char* value;
    const char* words = "";  // none: it gets over this
    std::size_t beeps = 0;
  } const rows[] = {
      {"silent", "B0:40"},
      {"badSum", "B0:3"},
      {"silent", "B5:2"},
      {"silent", "B5:3", reading},
      {"badSum", "B5:3", reading},
      {"silent", "B2:2"},
      {"silent", "B2:3", erasing, 1},
      {"failsBlock", "2:3"},
      {"failsBlock", "2:4", programming, 3},
      {"diesAfterBlocks", "3", programming, 3},
      {"silent", "B1:2"},
      {"modelNumber", "7777", model, 3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.name) + " " + row.value);
    auto config = UserPathBench::configFor("Cedar-H20R");
    ASSERT_TRUE(sim::setDemoFault(config, row.name, row.value));
    DemoBench bench(config);
    ASSERT_TRUE(bench.press(*row.words ? bench.page.com_Demo_Re_DownLoad : bench.page.com_Demo_DownLoad));
    bench.loop.runFor(Millis(1000));
    EXPECT_EQ(bench.notAtRest(), "");
    if (*row.words) {
      EXPECT_TRUE(bench.says(row.words)) << bench.text();
      EXPECT_FALSE(bench.says("Program OK."));
      EXPECT_FALSE(bench.says("Operation stopped.")) << "nobody pressed Stop";
      EXPECT_EQ(bench.dialogs.beeps.size(), row.beeps);
      EXPECT_EQ(bench.firmware.rounds(), 0) << "a failure ends the repeat";
    } else {
      EXPECT_EQ(bench.firmware.rounds(), 1);
      EXPECT_TRUE(bench.holdsCode());
    }
  }
}

TEST(Demo, StopsAtOnceWhereverItWaits) {
  for (int at = 1; at < 2000; at += 37) {
    SCOPED_TRACE(at);
    auto config = UserPathBench::configFor("Cedar-H20R");
    config.command = Bytes(40, 0x55);
    config.commandLine = {2400, 'e'};
    DemoBench bench(config);
    bench.page.che_Demo_DownLoad.setValue(true);
    bench.page.txt_DEMO_UserCode.setText(std::string(80, '5'));
    UserPathBench::setLine(bench.page.demoCommandLine(), "2400", "Even", "8", "1");
    bool pressed = false;
    bench.loop.after(Millis(at), [&] {
      pressed = bench.page.com_Demo_Stop.enabled();
      bench.page.com_Demo_Stop.press();
    });
    ASSERT_TRUE(bench.press(bench.page.com_Demo_DownLoad));
    if (!pressed) continue;
    EXPECT_LE(bench.loop.now() - Millis(at), Millis(1100));  // what was written goes out before the port closes
    EXPECT_EQ(bench.lines("Operation stopped. "), 1) << bench.text();
    if (bench.says("Program OK.")) {
      EXPECT_TRUE(bench.holdsCode()) << "pressed while the finish went out";
    }
    EXPECT_FALSE(bench.says("failed"));
    EXPECT_EQ(bench.notAtRest(), "");
  }
}

TEST(Demo, SaysWhyNothingBeginsAndThatThePortIsLost) {
  DemoBench bench;
  bench.images.imageValid = false;
  ASSERT_TRUE(bench.press(bench.page.com_Demo_DownLoad));
  EXPECT_EQ(bench.dialogs.shown.at(0).text, "  Please open code file. ");
  EXPECT_EQ(bench.link.opens, 0);
  bench.images.imageValid = true;
  bench.loop.after(Millis(500), [&] { bench.link.unplug(); });
  ASSERT_TRUE(bench.press(bench.page.com_Demo_Re_DownLoad));
  EXPECT_TRUE(bench.says("The COM port has been lost: /dev/ttyV0: the device was unplugged"));
  EXPECT_EQ(bench.lines("Operation stopped. "), 0) << "nobody has stopped it";
  EXPECT_EQ(bench.notAtRest(), "");
}

}  // namespace
