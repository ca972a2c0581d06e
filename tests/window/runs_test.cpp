// The real window on a pseudo-terminal with a simulated chip behind it: runs, Stop and closing at any moment.
#include "tests/window/target_desk.h"

namespace kvr::window {
namespace {

class WindowRun : public TargetDesk {
 protected:
  // A chip with power from the start, or after some seconds, and a window with the sample loaded.
  void openWithChip(const QStringList& extra = {}) {
    startTarget(QStringList{QStringLiteral("--model"), QStringLiteral("Ivy-HF0S"), QStringLiteral("--paced")} + extra);
    setSetting(QStringLiteral("Settings/DeviceProducts"), QStringLiteral("Ivy-HF0S"));
    open();
    program->form.openDropped(KVR_SOURCE_DIR "/samples/bench-clock.hex");
    settle();
  }
  bool ended() { return verdict() == QLatin1String("PASS") || verdict() == QLatin1String("FAIL"); }
};

TEST_F(WindowRun, StopEndsAWaitForAChipAndFreesTheWindow) {
  openWithChip({QStringLiteral("--power-on"), QStringLiteral("1000")});
  later(400, [&] {
    EXPECT_TRUE(program->link.isOpen());
    EXPECT_EQ(verdict(), QStringLiteral("WAITING"));
    EXPECT_FALSE(widget("comLoadFile").isEnabled());
    click("comStop_Download");
  });
  click("comDownload_0");
  ASSERT_TRUE(waitFor([&] { return ended() && !program->form.activity.busy(); }));
  EXPECT_EQ(verdict(), QStringLiteral("FAIL"));
  EXPECT_FALSE(program->link.isOpen());
  EXPECT_TRUE(widget("comDownload_0").isEnabled());
  EXPECT_TRUE(widget("comLoadFile").isEnabled());
}

TEST_F(WindowRun, AnAdapterPulledOutEndsTheRunWithinASecond) {
  openWithChip({QStringLiteral("--power-on"), QStringLiteral("1000")});
  platform::Instant pulled{};
  later(400, [&] {
    EXPECT_TRUE(program->link.isOpen());
    target.kill();
    target.waitForFinished();
    pulled = program->loop.now();
  });
  later(8000, [&] { click("comStop_Download"); });  // ends the test if nothing else ends the run
  click("comDownload_0");
  ASSERT_TRUE(waitFor([&] { return ended() && !program->form.activity.busy(); })) << pane();
  EXPECT_LT(program->loop.now() - pulled, std::chrono::seconds(1));
  EXPECT_EQ(verdict(), QStringLiteral("FAIL"));
  EXPECT_TRUE(QApplication::activeModalWidget() == nullptr);
}

// The window goes, with the port closed, whatever the run is doing at that moment.
TEST_F(WindowRun, ACloseAtAnyMomentOfARunEndsItAndTheWindowGoes) {
  for (const int ms : {0, 30, 200, 450, 700, 1000, 1400, 2000, 3000}) {
    gone = false;
    openWithChip({QStringLiteral("--power-on"), QStringLiteral("0.2")});
    later(ms, [&] { program->window->close(); });
    click("comDownload_0");
    ASSERT_TRUE(waitFor([&] { return !program->window->isVisible(); }, std::chrono::seconds(5)))
        << "closed after " << ms << " ms";
    QApplication::processEvents();
    EXPECT_TRUE(gone);
    EXPECT_FALSE(program->link.isOpen());
    EXPECT_FALSE(program->form.activity.busy());
    TearDown();
    QFile::remove(folder.filePath(QStringLiteral("com1")));
  }
}

TEST_F(WindowRun, AClosePressedTwiceDuringAQuestionGoesToo) {
  open();
  bool answer = true;
  later(50, [&] { program->window->close(); });
  program->loop.post([&] { answer = program->dialogs.askYesNo("KVR-ISP", "Go on?"); });
  EXPECT_TRUE(waitFor([&] { return !program->window->isVisible(); }, std::chrono::seconds(3)));
  EXPECT_FALSE(answer);
}

TEST_F(WindowRun, WhatWasChosenIsThereAgainAtTheNextStart) {
  open();
  pickModel(QStringLiteral("Ivy-HF0S"));
  click("optBeepNo");
  QTest::keyClick(&widget("combCommPort"), Qt::Key_Down);
  program->window->setGeometry(40, 30, 1200, 700);
  settle();
  click("comMastWindow");  // shrunk and locked when it goes
  settle();
  program->form.main.comMastWindow.setEnabled(false);
  program->window->close();
  ASSERT_TRUE(waitFor([&] { return !program->window->isVisible(); }, std::chrono::seconds(3)));
  program.reset();
  open();
  EXPECT_EQ(program->form.model.name(), "Ivy-HF0S");
  EXPECT_TRUE(widget<QAbstractButton>("optBeepNo").isChecked());
  EXPECT_EQ(widget<QComboBox>("combCommPort").currentText(), QStringLiteral("COM2"));
  EXPECT_EQ(program->window->geometry(), QRect(40, 30, 1200, 700));
}

}  // namespace
}  // namespace kvr::window
