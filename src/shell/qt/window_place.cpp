#include "shell/qt/window_place.h"

#include <QGuiApplication>
#include <QScreen>

namespace kvr::window {
namespace {

constexpr int kTwips = 15;
constexpr QSize kComfortable{1366, 740};
constexpr int kGrip = 60;  // what must be on a screen to take hold of the window

bool reachable(const QRect& place) {
  for (const auto* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry().intersected(QRect(place.topLeft(), QSize(place.width(), kGrip)));
    if (seen.width() >= kGrip && seen.height() >= kGrip / 2) return true;
  }
  return false;
}

}  // namespace

shell::WindowPlace placeOf(const QWidget& window) {
  const QRect place = window.isMaximized() || window.isFullScreen() ? window.normalGeometry() : window.geometry();
  return {place.x() * kTwips, place.y() * kTwips, place.width() * kTwips, place.height() * kTwips};
}

void placeWindow(QWidget& window, const shell::WindowPlace& place) {
  const QRect wanted(place.left / kTwips, place.top / kTwips, place.width / kTwips, place.height / kTwips);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  if (place == shell::WindowPlace{} || !reachable(wanted)) {
    window.resize(kComfortable.boundedTo(screen.size()));
    return;
  }
  window.setGeometry(wanted);
}

}  // namespace kvr::window
