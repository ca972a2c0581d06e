// What an operator does from the first start on.
#include <QDir>
#include <QDropEvent>
#include <QJsonArray>
#include <QLabel>
#include <QMimeData>
#include <QStandardPaths>
#include <QUrl>
#include <csignal>

#include "tests/window/target_desk.h"

namespace kvr::window {
namespace {

using std::chrono::seconds;

class RealTarget : public TargetDesk {
 protected:
  void openWith(const QStringList& arguments) {  // a window that has never been used
    startTarget(arguments);
    open();
  }
  static std::string violations(const QJsonObject& report) {
    return QJsonDocument(report[QStringLiteral("violations")].toArray()).toJson().toStdString();
  }
  void cyclePower() { ::kill(static_cast<pid_t>(target.processId()), SIGUSR1); }
  void cyclePowerWhenThePortOpens() {
    whenever([this] { return program->form.activity.busy() && program->link.isOpen(); }, [this] { cyclePower(); });
  }
  // The button, and the run that it starts, to its end.
  void press(const char* button, seconds limit = kLimit) {
    bool began = false;
    whenever([this] { return program->form.activity.busy(); }, [&] { began = true; });
    atTheLatest(limit, [this] { click("comStop_Download"); });
    click(button);
    EXPECT_TRUE(waitFor([&] { return began && !program->form.activity.busy(); }, limit)) << pane();
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
  void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  // Bytes that the file has and the flash has not.
  int differences(const QString& flashHex) {
    const QByteArray flash = QByteArray::fromHex(flashHex.toLatin1());
    const auto& code = program->form.images.state.CodeBuffer;
    EXPECT_GT(code.rangeEnd, 1000);
    int count = 0;
    for (int i = 0; i <= code.rangeEnd; ++i)
      if (code.fileWrote(i)) count += i >= flash.size() || static_cast<std::uint8_t>(flash[i]) != code.at(i);
    return count;
  }
  QString sample() { return QStringLiteral(KVR_SOURCE_DIR "/samples/bench-clock.hex"); }
};

TEST_F(RealTarget, ServesANewUserFromTheModelToTheCheckOfTheChip) {
  openWith({QStringLiteral("--model"), QStringLiteral("Ivy-HF0S"), QStringLiteral("--paced"),
            QStringLiteral("--power-on"), QStringLiteral("0.4")});
  pickModel(QStringLiteral("y-hf0s"));
  ASSERT_EQ(widget<QLineEdit>("txtDevice").text(), QStringLiteral("Ivy-HF0S"));
  drop(sample());
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

  const QJsonObject chip = holds();
  EXPECT_EQ(violations(chip), "[\n]\n");
  EXPECT_EQ(chip[QStringLiteral("erases")].toInt(), 1);
  EXPECT_EQ(differences(chip[QStringLiteral("flash")].toString()), 0);

  tab("TabStrip1", "options");
  const QString before = widget<QLabel>("LabOption_8").text();
  pickModel(QStringLiteral("pine-h03"));
  EXPECT_TRUE(widget<QLineEdit>("txtDevice").text().startsWith(QLatin1String("Pine-H03")));
  EXPECT_NE(widget<QLabel>("LabOption_8").text(), before);
  EXPECT_TRUE(widget("com_RC_frequency_5").isVisible()) << "the frequency of its oscillator";
}

TEST_F(RealTarget, EachBuildOfTheSampleIsProgrammedOnce) {
  if (QStandardPaths::findExecutable(QStringLiteral("sdcc")).isEmpty()) GTEST_SKIP() << "no sdcc";
  // A tree of its own: the build puts its result beside the sources, too.
  QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), QStringLiteral(KVR_SOURCE_DIR "/samples"),
                                           folder.filePath(QStringLiteral("samples"))});
  const QString built = folder.filePath(QStringLiteral("work/bench-clock.hex"));
  const auto rebuild = [&](const QByteArray& word) {
    QFile source(QStringLiteral(KVR_SOURCE_DIR "/samples/bench-clock/shell.c"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    write(folder.filePath(QStringLiteral("samples/bench-clock/shell.c")),
          source.readAll().replace("Bench clock.", word));
    QProcess compiler;
    compiler.start(QStringLiteral("bash"),
                   {folder.filePath(QStringLiteral("samples/build")), folder.filePath(QStringLiteral("work"))});
    // The window goes on meanwhile, and looks at the file at any moment of the build.
    ASSERT_TRUE(waitFor([&] { return compiler.state() == QProcess::NotRunning; }, 2 * kLimit));
    ASSERT_EQ(compiler.exitCode(), 0) << compiler.readAllStandardError().toStdString();
  };
  ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("work")));
  ASSERT_TRUE(QFile::copy(sample(), built));
  openWith({QStringLiteral("--model"), QStringLiteral("Ivy-HF0S"), QStringLiteral("--power-cycle-after"),
            QStringLiteral("0.1")});
  pickModel(QStringLiteral("ivy-hf0s"));
  drop(built);
  tab("TabStrip1", "store_buffer");
  click("cekReloadFileWhileFileChange");
  settle();
  const QByteArrayList texts{"Built again.", "Third build."};
  for (int number = 1; number <= 2; ++number) {
    rebuild(texts[number - 1]);
    EXPECT_TRUE(waitFor([&] { return passes() >= number && !program->form.activity.busy(); })) << pane();
    EXPECT_EQ(verdict(), QStringLiteral("PASS"));
    const QString flash = readReport()[QStringLiteral("flash")].toString();
    EXPECT_TRUE(QByteArray::fromHex(flash.toLatin1()).contains(texts[number - 1])) << "build " << number;
    EXPECT_EQ(differences(flash), 0) << "build " << number;
  }
  EXPECT_FALSE(waitFor([&] { return program->form.activity.busy(); }, std::chrono::milliseconds(2500)))
      << "two ticks of the watcher, and nothing new to program";
  EXPECT_EQ(passes(), 2) << pane();
  const QJsonObject chip = holds();
  EXPECT_EQ(chip[QStringLiteral("erases")].toInt(), 2);
  EXPECT_EQ(violations(chip), "[\n]\n");
}

}  // namespace
}  // namespace kvr::window
