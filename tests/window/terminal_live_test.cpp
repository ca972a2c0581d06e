// The terminal in the real window on a pseudo-terminal.
#include <QClipboard>
#include <QFile>
#include <algorithm>
#include <ctime>

#include "tests/support/far_end.h"
#include "tests/window/clicker.h"
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

// The device takes 9600 baud. Each turn is held by the window's own work, which other programs do not disturb; 99
// clicks of 100 by the clock, which also sees a write that blocks.
TEST_F(LiveTerminal, APasteOfAMegabyteNeverHoldsUpAClickAndIsCancelledInTheMiddle) {
  openTerminal();
  program->form.tool.che_LocalEcho.userSet(true);
  std::string text;
  while (text.size() < 1'000'000) text += "line " + std::to_string(text.size()) + " of a long text\n";
  QApplication::clipboard()->setText(QString::fromStdString(text));
  std::string device;
  platform::Timer line(
      program->loop, [&] { device += heard(19); }, platform::Timer::Kind::Periodic);
  double longest = 0;  // turn, in milliseconds of a core
  std::vector<double> waits;
  {
    Clicker clicker(*program, std::chrono::milliseconds(10));
    const auto turnUntil = [&](const std::function<bool()>& done) {
      for (const auto end = std::chrono::steady_clock::now() + kLimit; !done();) {
        ASSERT_LT(std::chrono::steady_clock::now(), end);
        const std::clock_t before = std::clock();
        program->loop.runOnce();
        longest = std::max(longest, static_cast<double>(std::clock() - before) * 1e3 / CLOCKS_PER_SEC);
      }
    };
    click("comPaste");
    turnUntil([&] { return widget("comPasteStop").isVisible(); });
    line.start(platform::Millis(20));
    turnUntil([&] { return device.size() > 2500; });
    EXPECT_LT(program->link.outBytesPending(), 2000U);
    click("comPasteStop");
    turnUntil([&] { return !widget("comPasteStop").isVisible(); });
    line.stop();
    turnUntil([&] { return clicker.times.size() >= 200; });
    waits = clicker.times;
  }
  std::sort(waits.begin(), waits.end());
  const double most = waits[waits.size() * 99 / 100];
  RecordProperty("paste_click_ms_max", std::to_string(waits.back()));
  EXPECT_LT(longest, 50) << "milliseconds of a core for one turn";
  EXPECT_LT(most, 50) << "milliseconds; the slowest of " << waits.size() << ": " << waits.back();
  EXPECT_EQ(program->link.outBytesPending(), 0U);
  EXPECT_TRUE(program->form.tool.labPaste.caption().starts_with("Paste cancelled"));
  EXPECT_EQ(device, text.substr(0, device.size()));
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
    EXPECT_EQ(program->form.main.labNotice.caption(), "COM1 is open again");
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
