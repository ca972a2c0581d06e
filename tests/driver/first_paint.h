// For measuring the start: says when the window has first been painted, and ends the program.
#pragma once

#include <QObject>

class QWidget;

namespace kvr::window {

class FirstPaint : public QObject {
 public:
  // Prints the monotonic clock in nanoseconds on standard output after the window's first paint, then quits.
  explicit FirstPaint(QWidget& window);
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool seen_ = false;
};

}  // namespace kvr::window
