// The terminal in the real window on a pseudo-terminal.
#include <QFile>
#include <algorithm>

#include "tests/support/far_end.h"
#include "tests/window/desk.h"

namespace kvr::window {
namespace {

using support::FarEnd;

class LiveTerminal : public Desk {
 protected:
  void plugIn() {
    far = std::make_unique<FarEnd>();
    QFile::remove(link());
    ASSERT_TRUE(QFile::link(QString::fromStdString(far->device()), link()));
  }
  void openTerminal() {
    plugIn();
    QSettings settings(QString::fromStdString(settingsPath()), QSettings::IniFormat);
    settings.setValue(QStringLiteral("Ports/COM1"), link());
    settings.sync();
    open();
    tab("TabStrip2", "Debug_COM");
    click("comOpenCOM_0");
    settle();
    ASSERT_TRUE(program->form.comTool.isOpen());
    widget("texReceive").setFocus();
  }
  QString link() const { return folder.filePath(QStringLiteral("adapter")); }
  std::string heard(std::size_t count) {
    const auto bytes = far->receive(count);
    return {bytes.begin(), bytes.end()};
  }
  std::unique_ptr<FarEnd> far;
};

TEST_F(LiveTerminal, EveryKeyTypedIntoThePaneGoesToTheDeviceAndNoneToTheWindow) {
  openTerminal();
  int downloads = 0;
  program->form.download.comDownload[0].onClick = [&] { ++downloads; };
  auto& pane = widget("texReceive");
  QTest::keyClick(&pane, Qt::Key_Tab);
  QTest::keyClick(&pane, Qt::Key_Escape);
  QTest::keyClick(&pane, Qt::Key_C, Qt::ControlModifier);
  QTest::keyClick(&pane, Qt::Key_Up);
  QTest::keyClick(&pane, Qt::Key_P, Qt::AltModifier);  // the letter of Program
  QTest::keyClick(&pane, Qt::Key_Return);
  settle();
  EXPECT_EQ(heard(9), "\t\x1B\x03\x1B[A\x1Bp\r");
  EXPECT_EQ(downloads, 0);
  EXPECT_TRUE(pane.hasFocus());
  QKeyEvent help(QEvent::ShortcutOverride, Qt::Key_F1, Qt::NoModifier);
  QApplication::sendEvent(&pane, &help);
  EXPECT_FALSE(help.isAccepted()) << "the window's own";
  QTest::keyClick(&pane, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_FALSE(pane.hasFocus()) << "a way out";
  auto& line = widget("texSend");
  program->form.tool.texSend.setText("sent");
  QTest::keyClick(&line, Qt::Key_Return);
  settle();
  EXPECT_EQ(heard(4), "sent");
}

TEST_F(LiveTerminal, ALongPasteToADeviceThatReadsNothingNeverHoldsUpAClickAndIsCancelled) {
  openTerminal();
  ASSERT_TRUE(program->form.tool.texReceive.userPaste(std::string(1'000'000, 'p')));
  std::vector<double> waits;
  for (int i = 0; i < 40; ++i) {
    QElapsedTimer time;
    time.start();
    bool answered = false;
    program->loop.post([&] { answered = true; });
    ASSERT_TRUE(waitFor([&] { return answered; }));
    waits.push_back(static_cast<double>(time.nsecsElapsed()) / 1e6);
    platform::delay(program->loop, platform::Millis(20));
  }
  std::sort(waits.begin(), waits.end());
  EXPECT_LT(waits[waits.size() / 2], 50) << "milliseconds; the slowest: " << waits.back();
  EXPECT_LT(program->link.outBytesPending(), 2000U);
  EXPECT_TRUE(widget("comPasteStop").isVisible());
  click("comPasteStop");
  settle();
  EXPECT_EQ(program->link.outBytesPending(), 0U);
  EXPECT_FALSE(widget("comPasteStop").isVisible());
  EXPECT_TRUE(program->form.tool.labPaste.caption().starts_with("Paste cancelled"));
}

TEST_F(LiveTerminal, ComesBackWithItsAdapterAndItsLogHoldsAllOfIt) {
  set("DebugReopen", 1);
  set("DebugLogFile", folder.filePath(QStringLiteral("t.log")));
  openTerminal();
  click("che_Log");
  settle();
  QByteArray all;
  for (int i = 0; i < 4; ++i) {
    const std::string text = "boot " + std::to_string(i) + "\n";
    far->send({text.begin(), text.end()});
    all += QByteArray::fromStdString(text);
    EXPECT_TRUE(waitFor([&] { return program->form.tool.texReceive.text().ends_with(text); }));
    far->hangUp();
    EXPECT_TRUE(waitFor([&] { return !program->form.comTool.isOpen(); }));
    plugIn();
    ASSERT_TRUE(waitFor([&] { return program->form.comTool.holdsPort(); }));
  }
  click("che_Log");
  settle();
  const auto logs = QDir(folder.path()).entryList({QStringLiteral("t-*.log")});
  ASSERT_EQ(logs.size(), 1);
  QFile log(folder.filePath(logs[0]));
  ASSERT_TRUE(log.open(QIODevice::ReadOnly));
  EXPECT_EQ(log.readAll(), all);
}

}  // namespace
}  // namespace kvr::window
