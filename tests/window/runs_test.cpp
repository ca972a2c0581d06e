// The real window on a pseudo-terminal with a simulated chip at its other end: runs, Stop and closing at any moment.
#include <QLabel>

#include "tests/window/target_desk.h"

namespace kvr::window {
namespace {

class WindowRun : public TargetDesk {
 protected:
  // A chip with power from the start, or after some seconds, and a window with the sample loaded.
  void openWithChip(const QStringList& extra = {}) {
    startTarget(QStringList{QStringLiteral("--model"), QStringLiteral("Ivy-HF0S"), QStringLiteral("--paced")} + extra);
    set("DeviceProducts", QStringLiteral("Ivy-HF0S"));
    open(KVR_SOURCE_DIR "/samples/bench-clock.hex");
  }
  bool waits() { return program->link.isOpen() && verdict() == QLatin1String("WAITING"); }
  void removeAll() {
    TearDown();
    QFile::remove(folder.filePath(QStringLiteral("com1")));
  }
  bool ended() { return verdict() == QLatin1String("PASS") || verdict() == QLatin1String("FAIL"); }
};

TEST_F(WindowRun, StopAndAPulledAdapterEachEndAWaitForAChipWithinASecondAndFreeTheWindow) {
  for (const bool pulled : {false, true}) {
    openWithChip({QStringLiteral("--power-on"), QStringLiteral("1000")});
    platform::Instant acted{};
    whenever([&] { return waits(); },
             [&] {
               EXPECT_FALSE(widget("comLoadFile").isEnabled());
               if (pulled)
                 endTarget();
               else
                 click("comStop_Download");
               acted = program->loop.now();
             });
    atTheLatest(kLimit, [&] { click("comStop_Download"); });
    click("comDownload_0");
    ASSERT_TRUE(waitFor([&] { return ended() && !program->form.activity.busy(); })) << pane();
    EXPECT_LT(program->loop.now() - acted, std::chrono::seconds(1)) << pulled;
    EXPECT_EQ(verdict(), QStringLiteral("FAIL"));
    EXPECT_FALSE(program->link.isOpen());
    EXPECT_TRUE(QApplication::activeModalWidget() == nullptr);
    EXPECT_TRUE(widget("comDownload_0").isEnabled() && widget("comLoadFile").isEnabled());
    removeAll();
  }
}

TEST_F(WindowRun, AButtonPressedBetweenTheCloseAndTheEndOfTheWindowStartsNothing) {
  const std::pair<const char*, const char*> starts[] = {{"options", "comDownload_0"},
                                                        {"CheckMCUoption", "comReadChipLock"},
                                                        {"TJXZ", "comTJXZ"},
                                                        {"ISP_DEMO", "com_Demo_DownLoad"},
                                                        {"user_code", "comSendUserCode"}};
  for (const auto& [page, button] : starts) {
    openWithChip({QStringLiteral("--power-on"), QStringLiteral("1000")});
    program->form.userpath.txtUserCode.setText("12 34");
    tab("TabStrip1", page);
    atTheLatest(std::chrono::seconds(5), [&] { program->form.stop.request(); });
    program->window->close();
    settle();
    click(button);
    EXPECT_FALSE(waitFor([&] { return program->link.isOpen() || !program->window->isVisible(); }) &&
                 program->link.isOpen())
        << button;
    EXPECT_TRUE(isGone()) << button;
    removeAll();
  }
}

TEST_F(WindowRun, TheLineUnderThePortBoxTellsOfThatPortAndNotOfTheTerminals) {
  startTarget({QStringLiteral("--model"), QStringLiteral("Ivy-HF0S")});
  const QString device = folder.filePath(QStringLiteral("com1"));
  setPort(2, device);
  setPort(1, folder.filePath(QStringLiteral("none")));
  open();
  ASSERT_TRUE(waitFor([&] { return !widget<QLabel>("portStatus").text().isEmpty(); }));
  const QString line = widget<QLabel>("portStatus").text();
  tab("TabStrip2", "Debug_COM");
  QTest::keyClick(&widget("com_Debug_COM"), Qt::Key_Down);
  settle();
  click("comOpenCOM_0");
  ASSERT_TRUE(waitFor([&] { return program->link.isOpen(); }));
  EXPECT_EQ(widget<QLabel>("portStatus").text(), line);
  click("comOpenCOM_0");
  QTest::keyClick(&widget("combCommPort"), Qt::Key_Down);
  EXPECT_TRUE(waitFor([&] { return widget<QLabel>("portStatus").text().contains(device); }));
  QTest::keyClick(&widget("combCommPort"), Qt::Key_Up);
  EXPECT_TRUE(waitFor([&] { return !widget<QLabel>("portStatus").text().contains(device); }));
  closeAndWait();
  open();
  EXPECT_TRUE(waitFor([&] { return !widget<QLabel>("portStatus").text().isEmpty(); })) << "at the second start, too";
}

TEST_F(WindowRun, AClosePressedTwiceDuringAQuestionGoesToo) {
  open();
  bool answer = true;
  whenever([&] { return QApplication::activeModalWidget() != nullptr; }, [&] { program->window->close(); });
  program->loop.post([&] { answer = program->dialogs.askYesNo("KVR-ISP", "Go on?"); });
  EXPECT_TRUE(waitFor([&] { return !program->window->isVisible(); }));
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
  program->form.main.comMastWindow.setEnabled(false);
  closeAndWait();
  program.reset();
  open();
  EXPECT_EQ(program->form.model.name(), "Ivy-HF0S");
  EXPECT_TRUE(widget<QAbstractButton>("optBeepNo").isChecked());
  EXPECT_EQ(widget<QComboBox>("combCommPort").currentText(), QStringLiteral("COM2"));
  EXPECT_EQ(program->window->geometry(), QRect(40, 30, 1200, 700));
}

}  // namespace
}  // namespace kvr::window
