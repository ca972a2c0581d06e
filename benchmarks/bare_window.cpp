// What a Qt window costs at the least: the same size and fonts as the program's, with one label in it.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>

#include "shell/qt/window_place.h"
#include "tests/driver/first_paint.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QMainWindow window;
  window.setWindowTitle("bare");
  window.setCentralWidget(new QLabel("KVR-ISP: Step1: Select MCU Type", &window));
  kvr::window::placeWindow(window, {});  // the program's own size at its first start
  const kvr::window::FirstPaint firstPaint(window);
  window.show();
  return QApplication::exec();
}
