// What an operator does from the first start on.
#include <QDropEvent>
#include <QJsonArray>
#include <QLabel>
#include <QMimeData>
#include <QUrl>
#include <csignal>

#include "tests/window/target_desk.h"

namespace kvr::window {
namespace {

class RealTarget : public TargetDesk {
 protected:
  void openWith(const QStringList& arguments) {  // a window that has never been used
    startTarget(QStringList{QStringLiteral("--model"), QStringLiteral("Ivy-HF0S")} + arguments);
    open();
  }
  void cyclePowerWhenThePortOpens() {
    whenever([this] { return program->form.activity.busy() && program->link.isOpen(); },
             [this] { ::kill(static_cast<pid_t>(target.processId()), SIGUSR1); });
  }
  // Presses the button and waits for the end of the run that it starts.
  void press(const char* button) {
    bool began = false;
    whenever([this] { return program->form.activity.busy(); }, [&] { began = true; });
    atTheLatest(kLimit, [this] { click("comStop_Download"); });
    click(button);
    EXPECT_TRUE(waitFor([&] { return began && !program->form.activity.busy(); })) << pane();
    plans.clear();
  }
  bool says(const std::string& text) { return pane().find(text) != std::string::npos; }
  int passes() { return widget<QLineEdit>("txtWrite_OK_Count").text().toInt(); }
  void drop(const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(program->window.get(), &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent event(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(program->window.get(), &event);
    ASSERT_TRUE(waitFor([&] { return program->form.images.loader.source().path == path.toStdString(); }));
    settle();
  }
  // What the target found fault with, and the bytes that the file has and the flash has not. Ends the target.
  void expectTheFileInAChipErasedOnce() {
    const QJsonObject chip = holds();
    const QJsonArray violations = chip[QStringLiteral("violations")].toArray();
    EXPECT_TRUE(violations.isEmpty()) << QJsonDocument(violations).toJson().toStdString();
    EXPECT_EQ(chip[QStringLiteral("erases")].toInt(), 1);
    const QByteArray flash = QByteArray::fromHex(chip[QStringLiteral("flash")].toString().toLatin1());
    const auto& code = program->form.images.state.CodeBuffer;
    EXPECT_GT(code.rangeEnd, 1000);
    int count = 0;
    for (int i = 0; i <= code.rangeEnd; ++i)
      if (code.fileWrote(i)) count += i >= flash.size() || static_cast<std::uint8_t>(flash[i]) != code.at(i);
    EXPECT_EQ(count, 0);
  }
};

TEST_F(RealTarget, ServesANewUserFromTheModelToTheCheckOfTheChip) {
  openWith({QStringLiteral("--paced"), QStringLiteral("--power-on"), QStringLiteral("0.4")});
  pickModel(QStringLiteral("y-hf0s"));
  ASSERT_EQ(widget<QLineEdit>("txtDevice").text(), QStringLiteral("Ivy-HF0S"));
  drop(QStringLiteral(KVR_SOURCE_DIR "/samples/bench-clock.hex"));
  tab("TabStrip1", "options");
  click("Option2_0");      // the other delay after a reset
  click("Option8_0");      // P4.6 resets
  press("comDownload_0");  // the chip has power and listens
  EXPECT_EQ(verdict(), QStringLiteral("PASS")) << pane();
  EXPECT_TRUE(says("Ivy-HF0S")) << pane();
  EXPECT_EQ(passes(), 1);
  EXPECT_TRUE(widget<QLabel>("portStatus").text().endsWith(QStringLiteral("/com1")));

  tab("TabStrip1", "CheckMCUoption");
  cyclePowerWhenThePortOpens();
  press("comReadChipLock");
  EXPECT_TRUE(says("P4.6/RESET2 pin voltage<1.33V Reset")) << pane();
  EXPECT_EQ(passes(), 1);
  expectTheFileInAChipErasedOnce();
}

}  // namespace
}  // namespace kvr::window
