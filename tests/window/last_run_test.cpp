// The picture of the last run, as the user comes to it: by the sign, by the key, and as a file.
#include <QImage>
#include <QPushButton>
#include <QXmlStreamReader>

#include "shell/qt/last_run_window.h"
#include "tests/window/desk.h"

namespace kvr::window {
namespace {

class LastRun : public Desk {
 protected:
  void endRun(engine::Ending ending) {
    using namespace std::chrono_literals;
    engine::Outcome outcome{.kind = engine::RunKind::Demo, .ending = ending};
    outcome.spent = {0us, 1s, 100ms, 300ms, 200ms, 4s, 0us, 500ms, 0us};
    outcome.bytesSent = 8192;
    program->form.results.end(outcome, "Ivy-HF0S", {});
    settle();
  }
  RunPictureView* picture() { return program->window->findChild<RunPictureView*>(QStringLiteral("runPicture")); }
};

TEST_F(LastRun, OpensFromTheSignAndTheKeyAndFollowsTheNextRun) {
  open();
  click("verdict");
  settle();
  EXPECT_EQ(picture(), nullptr) << "there was no run";
  endRun(engine::Ending::Passed);
  click("verdict");
  settle();
  ASSERT_NE(picture(), nullptr);
  EXPECT_TRUE(picture()->accessibleDescription().contains(QStringLiteral("PASS"))) << "what a screen reader tells";
  EXPECT_FALSE(picture()->accessibleDescription().contains(QStringLiteral("FAIL")));
  endRun(engine::Ending::Failed);
  EXPECT_TRUE(picture()->accessibleDescription().contains(QStringLiteral("FAIL"))) << "above the one before";
  EXPECT_TRUE(picture()->accessibleDescription().contains(QStringLiteral("8.0 kB, 2.00 kB/s")));
  QTest::keyClick(picture()->window(), Qt::Key_Escape);
  settle();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(picture(), nullptr);
}

TEST_F(LastRun, OpensByItsKey) {
  open();
  endRun(engine::Ending::Passed);
  program->window->activateWindow();
  EXPECT_TRUE(waitFor([this] { return program->window->isActiveWindow(); }));
  QTest::keyClick(program->window.get(), Qt::Key_U, Qt::AltModifier);
  EXPECT_TRUE(waitFor([this] { return picture() != nullptr; }));
}

TEST_F(LastRun, IsDrawnOnThePaperOfTheWindow) {
  open();
  endRun(engine::Ending::Passed);
  program->form.download.comLastRun.press();
  ASSERT_NE(picture(), nullptr);
  const QImage image = picture()->image();
  std::map<QRgb, int> colours;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) ++colours[image.pixel(x, y)];
  EXPECT_EQ(image.pixel(2, 2), picture()->palette().color(QPalette::Window).rgb());
  const auto large = std::count_if(colours.begin(), colours.end(), [](const auto& c) { return c.second > 1000; });
  EXPECT_GE(large, 5) << "paper and four stages";
}

TEST_F(LastRun, IsSavedAsADrawingWithItsTexts) {
  open();
  endRun(engine::Ending::Passed);
  program->form.download.comLastRun.press();
  ASSERT_NE(picture(), nullptr);
  QXmlStreamReader svg(picture()->svg());
  QString texts;
  int shapes = 0;
  for (; !svg.atEnd(); svg.readNext()) {
    texts += svg.isCharacters() ? svg.text().toString() : QString();
    shapes += svg.isStartElement() && (svg.name() == QLatin1String("rect") || svg.name() == QLatin1String("path"));
  }
  EXPECT_FALSE(svg.hasError()) << svg.errorString().toStdString();
  EXPECT_TRUE(texts.contains(QStringLiteral("8.0 kB, 2.00 kB/s")));
  EXPECT_GE(shapes, 5) << "paper and four stages";
}

}  // namespace
}  // namespace kvr::window
