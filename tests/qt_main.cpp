#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTemporaryFile>

namespace {

// Off screen Qt has a screen of 800 x 800, on which the window would never be as large as on a user's.
constexpr char kScreen[] =
    R"({"windowFrameMargins": false, "screens": [{"name": "bench", "x": 0, "y": 0, "width": 1600, "height": 900,
  "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";

}  // namespace

int main(int argc, char** argv) {
  QTemporaryFile screen;
  const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
  if ((platform.isEmpty() || platform == "offscreen") && screen.open()) {
    screen.write(kScreen);
    screen.flush();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screen.fileName().toLocal8Bit());
  }
  const QTemporaryDir state;  // no trace of a test's run belongs into the user's folder
  qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
  ::testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
