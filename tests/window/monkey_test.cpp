// Hands that press, type and drag at random over every page, with a chip, a board and a talking firmware on three
// ports. What it looks for are faults that the sanitizers see, hangs, and a window that does not close.
//   KVR_MONKEY_SECONDS=1200 KVR_MONKEY_SEED=7 QT_QPA_PLATFORM=offscreen build/asan/tests/test_window
//   --gtest_filter='Monkey.*'
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QTimer>
#include <QWheelEvent>
#include <random>

#include "tests/support/hex_record.h"
#include "tests/window/target_desk.h"

namespace kvr::window {
namespace {

// A firmware that talks whether anybody listens or not, in every kind of byte.
class Talker {
 public:
  Talker() {
    grantpt(master_);
    unlockpt(master_);
  }
  ~Talker() { ::close(master_); }
  QString device() const { return QString::fromLocal8Bit(ptsname(master_)); }
  bool talk(unsigned seed) const {
    std::string text = "\x1B[3" + std::to_string(seed % 8) + "mtick " + std::to_string(seed) + " \xC3\xA9\r\n";
    if (seed % 16 == 0) text.assign(3000, static_cast<char>(seed >> 4));
    return ::write(master_, text.data(), text.size()) > 0;
  }

 private:
  int master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
};

class Monkey : public TargetDesk {
 protected:
  void startBoard() {
    board.setProgram(target.program());
    board.setArguments({QStringLiteral("--link"), path("com2"), QStringLiteral("--device"), QStringLiteral("board"),
                        QStringLiteral("--model"), QStringLiteral("Ivy-HF0S")});
    board.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(path("com2")); }, 5000));
  }
  QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
  unsigned upTo(unsigned count) { return std::uniform_int_distribution<unsigned>(0, count - 1)(random); }
  template <class List>
  auto oneOf(const List& list) {
    return list[static_cast<decltype(list.size())>(upTo(static_cast<unsigned>(list.size())))];
  }

  // Whoever a user's hands would reach now.
  QWidget* surface() {
    if (auto* popup = QApplication::activePopupWidget()) return popup;
    if (auto* modal = QApplication::activeModalWidget()) return modal;
    return program->window.get();
  }
  QWidget* target_() {
    QList<QWidget*> all{surface()};
    for (auto* child : all[0]->findChildren<QWidget*>())
      if (child->isVisible() && child->isEnabled() && child->window() == all[0]) all << child;
    return oneOf(all);
  }
  void mouse(const QPointer<QWidget>& at, QEvent::Type type, QPointF where, Qt::MouseButton button) {
    if (!at) return;
    const bool up = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, where, at->mapToGlobal(where), type == QEvent::MouseMove ? Qt::NoButton : button,
                      up ? Qt::MouseButtons() : Qt::MouseButtons(button),
                      upTo(8) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
    QApplication::sendEvent(at, &event);
  }
  QPointF somewhere(const QWidget& widget) {
    return {static_cast<double>(upTo(static_cast<unsigned>(widget.width()) + 1)),
            static_cast<double>(upTo(static_cast<unsigned>(widget.height()) + 1))};
  }
  void press(QPointer<QWidget> at) {
    const QPointF where = somewhere(*at);
    mouse(at, QEvent::MouseButtonPress, where, Qt::LeftButton);
    if (upTo(6) == 0) mouse(at, QEvent::MouseButtonDblClick, where, Qt::LeftButton);
    mouse(at, QEvent::MouseButtonRelease, where, Qt::LeftButton);
  }
  void drag(QPointer<QWidget> at) {
    mouse(at, QEvent::MouseButtonPress, somewhere(*at), Qt::LeftButton);
    for (int i = 0; at && i < 6; ++i) mouse(at, QEvent::MouseMove, somewhere(*at) * 1.5, Qt::LeftButton);
    if (at) mouse(at, QEvent::MouseButtonRelease, somewhere(*at), Qt::LeftButton);
  }
  void type(QPointer<QWidget> at) {
    static const std::vector<int> keys{Qt::Key_Tab,  Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space,     Qt::Key_Left,
                                       Qt::Key_Down, Qt::Key_Up,     Qt::Key_PageUp, Qt::Key_Backspace, Qt::Key_Home,
                                       Qt::Key_End,  Qt::Key_F3,     Qt::Key_F8,     Qt::Key_Delete};
    static const std::vector<int> controls{Qt::Key_Z, Qt::Key_Y, Qt::Key_A, Qt::Key_C, Qt::Key_V, Qt::Key_F, Qt::Key_G};
    if (upTo(3) == 0) at->setFocus();
    if (upTo(5) == 0) return QTest::keyClick(at, static_cast<Qt::Key>(oneOf(controls)), Qt::ControlModifier);
    if (upTo(2) == 0) return QTest::keyClick(at, static_cast<Qt::Key>(oneOf(keys)));
    QTest::keyClick(at, oneOf(std::string("0123456789ABCDEFabcdef xyz")));
  }
  void turnWheel(QPointer<QWidget> at) {
    const QPointF where = somewhere(*at);
    QWheelEvent event(where, at->mapToGlobal(where), {}, {0, upTo(2) == 0 ? 120 : -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(at, &event);
  }
  void askMenu(QPointer<QWidget> at) {
    const QPoint where = somewhere(*at).toPoint();
    QContextMenuEvent event(QContextMenuEvent::Mouse, where, at->mapToGlobal(where));
    QApplication::sendEvent(at, &event);
  }
  // What a user does on purpose: a page, a port, a run, the terminal.
  void purpose() {
    auto& form = program->form;
    const auto page = [this](platform::TabStrip& strip) {
      const auto to = static_cast<int>(upTo(static_cast<unsigned>(strip.tabs().size())));
      program->loop.post([&strip, to] { strip.userSelect(to); });
    };
    switch (upTo(8)) {
      case 0:
        return page(form.main.TabStrip1);
      case 1:
      case 2:
        return page(form.main.TabStrip2);
      case 3:
        return program->loop.post([&form, to = static_cast<int>(upTo(3))] { form.main.combCommPort.userPick(to); });
      case 4:
        return program->loop.post([&form, to = static_cast<int>(upTo(3))] { form.tool.com_Debug_COM.userPick(to); });
      case 5:
        return program->loop.post([&form] { form.download.comDownload[0].press(); });
      case 6:
        return program->loop.post([&form] { form.tool.comOpenCOM[0].press(); });
      default:
        return program->loop.post(
            [&, to = path(upTo(2) == 0 ? "a.bin" : "b.hex").toStdString()] { form.openDropped(to); });
    }
  }
  // Files are named, never hunted for: a random hand in a file dialog could delete what is not its own.
  bool answerFileDialog() {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!dialog) return false;
    if (upTo(2) == 0) {
      dialog->reject();
    } else {
      dialog->selectFile(path(oneOf(std::vector<const char*>{"a.bin", "b.hex", "new.out", "none"})));
      QMetaObject::invokeMethod(dialog, "accept");
    }
    return true;
  }
  void step() {
    talker.talk(random());
    if (answerFileDialog()) return;
    if (upTo(12) == 0 && surface() == program->window.get()) return purpose();
    const QPointer<QWidget> at = target_();
    // The handbook opens in a browser, which is not ours to press.
    if (at->objectName().contains(QLatin1String("andbook"))) return;
    switch (upTo(10)) {
      case 0:
        return drag(at);
      case 1:
        return askMenu(at);
      case 2:
        return turnWheel(at);
      case 3:
      case 4:
      case 5:
        return type(at);
      default:
        return press(at);
    }
  }

  // As a user would close it, over whatever is open or under way.
  void endIt(QTimer& hand) {
    hand.setInterval(100);
    if (auto* popup = QApplication::activePopupWidget()) popup->close();
    program->window->close();
  }

  QProcess board;
  Talker talker;
  std::mt19937 random{static_cast<unsigned>(qEnvironmentVariableIntValue("KVR_MONKEY_SEED"))};
};

TEST_F(Monkey, PressesTypesAndDragsAndTheWindowStaysAliveAndCloses) {
  const int seconds =
      qEnvironmentVariableIsSet("KVR_MONKEY_SECONDS") ? qEnvironmentVariableIntValue("KVR_MONKEY_SECONDS") : 4;
  const QString before = QDir::currentPath();
  QDir::setCurrent(folder.path());  // logs that a random hand names land here
  QFile binary(path("a.bin"));
  QFile hex(path("b.hex"));
  ASSERT_TRUE(binary.open(QIODevice::WriteOnly) && hex.open(QIODevice::WriteOnly));
  binary.write(QByteArray(3000, 'a'));
  for (int at : {0, 0x20, 0x1000})
    hex.write((support::hexRecord(at, platform::Bytes(16, static_cast<std::uint8_t>(at + 1))) + "\r\n").data());
  hex.write(std::string(support::kEndRecord).data());
  binary.close();
  hex.close();
  startTarget({QStringLiteral("--model"), QStringLiteral("Ivy-HF0S"), QStringLiteral("--power-cycle-after"),
               QStringLiteral("0.2"), QStringLiteral("--firmware"), QStringLiteral("chatter")});
  startBoard();
  setPort(2, path("com2"));
  setPort(3, talker.device());
  set("DebugLogFile", path("t.log"));
  open();
  QTimer hand;
  QElapsedTimer time;
  time.start();
  const auto timeIsUp = [&] { return time.elapsed() >= seconds * 1000; };
  int steps = 0;
  std::int64_t longest = 0;
  QElapsedTimer sinceStep;
  sinceStep.start();
  QObject::connect(&hand, &QTimer::timeout, &hand, [&] {
    longest = std::max<std::int64_t>(longest, sinceStep.restart());
    if (timeIsUp()) return endIt(hand);
    ++steps;
    step();
  });
  hand.start(2);
  EXPECT_TRUE(waitFor([&] { return !program->window->isVisible(); }, std::chrono::seconds(seconds) + kLimit));
  hand.stop();
  std::printf("%d steps, the longest pause %lld ms\n", steps, static_cast<long long>(longest));
  EXPECT_GT(steps, 10 * seconds);
  EXPECT_LT(longest, 20'000) << "the window hung";
  EXPECT_TRUE(timeIsUp()) << "a random hand cannot close the window";
  settle();
  EXPECT_TRUE(gone) << "it does not close";
  QDir::setCurrent(before);
  board.terminate();
  board.waitForFinished(3000);
}

}  // namespace
}  // namespace kvr::window
