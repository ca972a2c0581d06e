#include "shell/qt/window_place.h"

#include <QGuiApplication>
#include <QRegion>
#include <QScreen>

namespace kvr::window {
namespace {

constexpr int kTwips = 15;
constexpr QSize kComfortable{1366, 740};
constexpr int kTitleBar = 24;  // at least; the window's own place begins below it

QList<QRect> freeAreas() {
  QList<QRect> areas;
  for (const auto* screen : QGuiApplication::screens())
    areas << screen->availableGeometry().adjusted(0, kTitleBar, 0, 0);
  return areas;
}

qint64 areaOf(const QRect& rect) {
  return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

}  // namespace

QRect reachablePlace(const QRect& wanted, const QList<QRect>& screens) {
  if (wanted.isEmpty()) return {};
  QRegion hidden(wanted);
  QRect home;  // the screen that shows most of it
  for (const QRect& screen : screens) {
    hidden -= screen;
    if (areaOf(screen & wanted) > areaOf(home & wanted)) home = screen;
  }
  if (hidden.isEmpty() || home.isEmpty()) return home.isEmpty() ? QRect() : wanted;
  QRect place(wanted.topLeft(), wanted.size().boundedTo(home.size()));
  place.moveLeft(std::clamp(place.left(), home.left(), home.right() + 1 - place.width()));
  place.moveTop(std::clamp(place.top(), home.top(), home.bottom() + 1 - place.height()));
  return place;
}

shell::WindowPlace placeOf(const QWidget& window) {
  const QRect place = window.isMaximized() || window.isFullScreen() ? window.normalGeometry() : window.geometry();
  return {place.x() * kTwips, place.y() * kTwips, place.width() * kTwips, place.height() * kTwips};
}

void placeWindow(QWidget& window, const shell::WindowPlace& place) {
  const QRect wanted(place.left / kTwips, place.top / kTwips, place.width / kTwips, place.height / kTwips);
  const QRect found = place == shell::WindowPlace{} ? QRect() : reachablePlace(wanted, freeAreas());
  if (found.isEmpty())
    window.resize(kComfortable.boundedTo(QGuiApplication::primaryScreen()->availableGeometry().size()));
  else
    window.setGeometry(
        reachablePlace(QRect(found.topLeft(), found.size().expandedTo(window.minimumSizeHint())), freeAreas()));
}

}  // namespace kvr::window
