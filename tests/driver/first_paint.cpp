#include "tests/driver/first_paint.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstdio>

namespace kvr::window {

FirstPaint::FirstPaint(QWidget& window) : QObject(&window) {
  window.installEventFilter(this);
}

// The filter sees the event before the window does; the queued call comes when all of it has been painted.
bool FirstPaint::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Paint && !seen_) {
    seen_ = true;
    QTimer::singleShot(0, this, [] {
      const auto now = std::chrono::steady_clock::now().time_since_epoch();
      std::printf("%lld\n", static_cast<long long>(std::chrono::nanoseconds(now).count()));
      std::fflush(stdout);
      QCoreApplication::quit();
    });
  }
  return QObject::eventFilter(object, event);
}

}  // namespace kvr::window
