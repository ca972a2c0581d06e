// The sign, the log and the locks, for every kind of run.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/engine_bench.h"
#include "tests/support/form_bench.h"

namespace kvr::shell {
namespace {

using download::VerdictKind;
using platform::Millis;

struct Signs : ::testing::Test {
  void SetUp() override {
    bench.select("Cedar-H20R");
    bench.loadCode(support::randomBytes(1, 900));
    form.main.cheBatchLog.setValue(true);
    form.main.txtBatchLog.setText("/log.csv");
    bench.insertChip();
    ASSERT_TRUE(bench.press(form.download.comDownload[0]));
    ASSERT_TRUE(bench.passed()) << bench.pane();
  }
  VerdictKind sign() const { return form.download.verdict.value(); }
  std::string log() {
    const auto text = bench.files.read("/log.csv", 100000);
    return text ? std::string(text->begin(), text->end()) : std::string();
  }
  void expectFailure(const char* words) {
    EXPECT_EQ(sign(), VerdictKind::Fail) << bench.pane();
    const std::string all = log();
    const std::string last = all.substr(all.rfind('\n', all.size() - 2) + 1);
    EXPECT_NE(last.find("FAIL"), std::string::npos) << last;
    EXPECT_NE(last.find(words), std::string::npos) << last;
  }
  support::FormBench bench;
  MainForm& form = bench.form;
};

TEST_F(Signs, APassDoesNotOutliveADemoRunThatFails) {
  sim::DemoConfig config;
  config.row = catalogue::findByName("Cedar-H10R");
  config.downloadLine = {38400, 'e'};
  bench.connectDemo(config);
  ASSERT_TRUE(bench.press(form.userpath.com_Demo_DownLoad));
  expectFailure("MCU Type is incorrect");
}

TEST_F(Signs, APassDoesNotOutliveABoardThatFails) {
  bench.connectBoard({}, Millis(2000));
  bool seen = false;
  bench.loop.after(Millis(1500), [&] { seen = sign() == VerdictKind::Waiting; });
  bench.loop.after(Millis(5000), [&] { bench.link.unplug(); });
  ASSERT_TRUE(bench.press(form.offline.comTJXZ));
  EXPECT_TRUE(seen);
  expectFailure("The COM port has been lost");
}

TEST_F(Signs, APassDoesNotOutliveATriggerThatCannotBeSent) {
  bench.link.refusesToOpen = {platform::PortError::Kind::Busy, "in use"};
  ASSERT_TRUE(bench.press(form.userpath.comSendUserCode));
  expectFailure("Open COM port failed!");
}

TEST_F(Signs, ABoardWithNothingButAnEepromFileIsRefused) {
  bench.select("Ivy-H20S");
  form.images.loader.clearBuffers();
  bench.loadData(support::randomBytes(2, 100));
  const int opens = bench.link.opens;
  ASSERT_TRUE(bench.press(form.offline.comTJXZ));
  EXPECT_EQ(bench.dialogs.shown.back().text, "Please open code file.");
  EXPECT_EQ(bench.link.opens, opens);
}

// The box of a wrong model stands open for a minute.
TEST_F(Signs, FailureIsShownAndThePortClosedBeforeABoxIsAnswered) {
  bench.dialogs.thinking = Millis(60000);
  for (const bool oldFirmware : {true, false}) {
    sim::ChipConfig config = sim::configFor(*catalogue::findByName("Cedar-H20R"));
    config.faults.wrongModelCode = !oldFirmware;
    config.faults.oldFirmware = oldFirmware;
    bench.insertChip(config);
    bool seen = false;
    bench.loop.after(Millis(30000), [&] {
      seen = true;
      EXPECT_EQ(sign(), VerdictKind::Fail);
      EXPECT_FALSE(bench.link.isOpen());
    });
    ASSERT_TRUE(bench.press(form.download.comDownload[0]));
    EXPECT_TRUE(seen);
    EXPECT_GT(bench.dialogs.shown.back().text.size(), 20u);
  }
}

TEST_F(Signs, PortAndBaudBoxesAndTheModelAreClosedAndStopWorksWhileAFileIsWaitedFor) {
  form.images.panel.cekReloadFile.setValue(true);
  bench.loadCode(support::randomBytes(3, 900));
  bench.files.put("/image.bin", support::randomBytes(4, 900));
  bool seen = false;
  bench.loop.after(Millis(20), [&] {
    seen = true;
    for (const platform::Control* box : std::initializer_list<const platform::Control*>{
             &form.main.combCommPort, &form.download.cobBaudMin, &form.download.cobBaudMax, &form.main.txtDevice})
      EXPECT_FALSE(box->enabled()) << box->name();
    EXPECT_TRUE(form.download.comStop_Download.enabled());
    form.download.comStop_Download.press();
  });
  ASSERT_TRUE(bench.press(form.download.comDownload[0]));
  EXPECT_TRUE(seen);
  EXPECT_LT(bench.loop.now(), std::chrono::minutes(2));
  EXPECT_TRUE(form.main.combCommPort.enabled());
}

// An adapter is plugged in the middle of the run and takes the number.
TEST_F(Signs, ARunComesBackToTheDeviceThatItOpened) {
  bench.insertChip(7);
  bench.loop.after(Millis(1200), [&] { bench.link.devices[1] = "/dev/ttyV9"; });
  ASSERT_TRUE(bench.press(form.download.comDownload[0]));
  EXPECT_TRUE(bench.passed()) << bench.pane();
  EXPECT_EQ(bench.link.device(), "/dev/ttyV0");
}

TEST_F(Signs, NothingStartsBetweenTheCloseOfTheWindowAndItsGoing) {
  const int opens = bench.link.opens;
  EXPECT_TRUE(form.queryUnload());
  for (platform::Button* button : {&form.download.comDownload[0], &form.download.comDownload[1],
                                   &form.download.comReadChipLock, &form.download.Command2, &form.offline.comTJXZ,
                                   &form.userpath.com_Demo_DownLoad, &form.userpath.comSendUserCode})
    button->press();
  bool gone = false;
  form.onUnload = [&] { gone = true; };
  bench.loop.runFor(Millis(2000));
  EXPECT_TRUE(gone);
  EXPECT_EQ(bench.link.opens, opens);
}

TEST_F(Signs, TheSignIsReadyAgainWhenTheModelOrAnImageChanges) {
  bench.loadCode(support::randomBytes(9, 900));
  EXPECT_EQ(sign(), VerdictKind::Idle);
}

}  // namespace
}  // namespace kvr::shell
