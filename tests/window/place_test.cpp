// Where the window is and how large, how it shrinks, and what is handed to it when it starts.
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QSplitter>

#include "shell/qt/window_place.h"
#include "tests/window/desk.h"

namespace kvr::window {
namespace {

class Place : public Desk {
 protected:
  static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }
};

TEST_F(Place, AWindowComesBackWhollyReachableHoweverLargeItWas) {
  constexpr int kPixel = 15;
  const QRect places[] = {{100, 50, 2500, 1300},       {1500, 800, 1200, 700}, {-300, 200, 1200, 700},
                          {0, 0, 60000, 60000},        {5000, 0, 1200, 700},   {0, 0, -5, 0},
                          {0, 0, 143165576, 143165576}};
  for (const QRect& place : places) {
    set("MainLeft", place.left() * kPixel);
    set("MainTop", place.top() * kPixel);
    set("MainWidth", place.width() * kPixel);
    set("MainHeight", place.height() * kPixel);
    open();
    const QRect got = program->window->geometry();
    ASSERT_TRUE(screen().contains(got)) << place.width() << " came back as " << got.width() << " x " << got.height()
                                        << " at " << got.x() << ", " << got.y();
    EXPECT_GE(got.width(), 600);
    closeAndWait();
    EXPECT_LE(saved("MainWidth").toInt(), screen().width() * kPixel);
    EXPECT_LE(saved("MainHeight").toInt(), screen().height() * kPixel);
  }
}

TEST(ReachablePlace, LeavesAWindowAcrossTwoScreensAndMovesOneThatLostItsScreen) {
  const QRect left(0, 24, 1600, 876);
  const QRect right(1600, 24, 1920, 1056);
  const QRect across(1000, 100, 1200, 700);
  EXPECT_EQ(reachablePlace(across, {left, right}), across);
  EXPECT_EQ(reachablePlace(across, {left}), QRect(400, 100, 1200, 700));
  EXPECT_EQ(reachablePlace(QRect(2000, 100, 1200, 700), {left}), QRect());
}

TEST_F(Place, ShrinkKeepsWhatARunNeedsAndTheWayBackInSight) {
  open();
  const QRect before = program->window->geometry();
  const auto shrink = [&] {
    auto& button = widget<QAbstractButton>("comMastWindow");
    ASSERT_TRUE(button.isVisible());
    ASSERT_TRUE(program->window->rect().contains(QRect(button.mapTo(program->window.get(), QPoint()), button.size())));
    click("comMastWindow");
    settle();
  };
  shrink();
  EXPECT_FALSE(widget("leftColumn").isVisible());
  EXPECT_LT(program->window->width(), before.width() - 300);
  EXPECT_EQ(program->window->geometry().right(), before.right());
  EXPECT_EQ(widget<QAbstractButton>("comMastWindow").text(), QStringLiteral("Resume"));
  for (const char* part : {"strip_verdict", "strip_comDownload_0", "strip_comStop_Download", "strip_count"})
    EXPECT_TRUE(widget(part).isVisible()) << part;
  shrink();
  EXPECT_EQ(program->window->geometry(), before);
  EXPECT_FALSE(widget("strip_verdict").isVisible());
  shrink();
  program->window->showMaximized();
  settle();
  shrink();
  program->window->showNormal();
  settle();
  EXPECT_EQ(program->window->geometry(), before);
}

TEST_F(Place, TheStripAloneFitsACornerAndEveryWayOutOfItGivesTheWindowBack) {
  open();
  const QRect before = program->window->geometry();
  click("comMastWindow");
  settle();
  const QRect narrow = program->window->geometry();
  widget<QAbstractButton>("cheStripOnly").click();
  settle();
  const QRect strip = program->window->geometry();
  EXPECT_LE(strip.width(), 640);
  EXPECT_LE(strip.height(), 130);
  EXPECT_EQ(strip.topRight(), narrow.topRight());
  for (const char* part : {"strip_verdict", "strip_comDownload_0", "strip_comStop_Download", "strip_count",
                           "strip_comMastWindow", "cheStripOnly"})
    EXPECT_TRUE(program->window->rect().contains(
        QRect(widget(part).mapTo(program->window.get(), QPoint()), widget(part).size())))
        << part;
  program->form.main.textMsg.appendLine("Chip found\n");
  EXPECT_EQ(widget<QLabel>("strip_message").text(), QStringLiteral("Chip found"));
  program->window->move(40, 60);
  widget<QAbstractButton>("cheStripOnly").click();
  settle();
  EXPECT_EQ(program->window->geometry(), narrow);
  widget<QAbstractButton>("cheStripOnly").click();
  settle();
  EXPECT_EQ(program->window->geometry(), QRect(QPoint(40, 60), strip.size()));
  click("strip_comMastWindow");
  settle();
  EXPECT_EQ(program->window->geometry(), before);
  program->window->showMaximized();
  settle();
  click("comMastWindow");  // at once the strip: it was left so
  settle();
  EXPECT_EQ(program->window->size(), strip.size());
  closeAndWait();
  EXPECT_EQ(saved("MainWidth").toInt(), before.width() * 15);
}

TEST_F(Place, OneDragOfTheSplitterIsSavedOnceAtItsEnd) {
  open();
  tab("TabStrip2", "Debug_COM");
  program->window->resize(1600, 800);
  settle();
  auto& splitter = widget<QSplitter>("ImgSplitter");
  auto* handle = splitter.handle(1);
  const int before = splitter.sizes().at(1);
  const QVariant kept = saved("Frame24_Width");
  const QPoint grip = handle->rect().center();
  QTest::mousePress(handle, Qt::LeftButton, {}, grip);
  for (int step = 1; step <= 20; ++step) {
    QTest::mouseMove(handle, handle->mapFromGlobal(splitter.mapToGlobal(handle->pos()) + grip - QPoint(5, 0)));
    settle();
    ASSERT_EQ(saved("Frame24_Width"), kept) << "after step " << step;
  }
  QTest::mouseRelease(handle, Qt::LeftButton, {}, grip);
  settle();
  EXPECT_GT(splitter.sizes().at(1), before + 50);
  EXPECT_EQ(saved("Frame24_Width").toInt(), splitter.sizes().at(1) * 15);
}

TEST_F(Place, AFileNamedOnTheCommandLineIsKeptByItsWholePath) {
  const QString former = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(QStringLiteral(KVR_SOURCE_DIR)));
  set("DeviceProducts", QStringLiteral("Ivy-HF0S"));
  open("samples/bench-clock.hex");
  EXPECT_TRUE(QDir::setCurrent(former));
  EXPECT_EQ(program->form.images.loader.source().path, KVR_SOURCE_DIR "/samples/bench-clock.hex");
  // It comes back from the list behind the button, by keys alone.
  program->form.images.loader.clearBuffers();
  QTest::keyClick(&widget("comLoadFile_recent"), Qt::Key_Space);
  settle();
  auto& menu = widget<QMenu>("recentMenu");
  ASSERT_EQ(menu.actions().size(), 1);
  QTest::keyClick(&menu, Qt::Key_1);
  settle();
  EXPECT_TRUE(program->form.images.state.imageValid);
}

}  // namespace
}  // namespace kvr::window
