#include "shell/qt/settings_popup.h"

#include <QFrame>
#include <QLayout>
#include <QScreen>
#include <algorithm>

namespace kvr::window {
namespace {

// Below the button, or above it where the screen ends.
QPoint placeOf(const QWidget& button, const QSize& size) {
  const QRect screen = button.screen()->availableGeometry();
  QPoint place = button.mapToGlobal(QPoint(0, button.height()));
  if (place.y() + size.height() > screen.bottom()) place.setY(button.mapToGlobal(QPoint()).y() - size.height());
  place.setX(std::max(screen.left(), std::min(place.x(), screen.right() - size.width())));
  place.setY(std::max(screen.top(), place.y()));
  return place;
}

}  // namespace

QPushButton* popupButton(const QString& caption, const QString& name, QLayout* content) {
  auto* button = new QPushButton(caption);
  button->setAutoDefault(false);
  button->setAccessibleName(name);
  button->setToolTip(name);
  auto* popup = new QFrame(button, Qt::Popup);
  popup->setObjectName(QStringLiteral("settingsPopup"));
  popup->setFrameShape(QFrame::StyledPanel);
  popup->setAccessibleName(name);
  content->setContentsMargins(8, 8, 8, 8);
  popup->setLayout(content);
  QObject::connect(button, &QPushButton::clicked, popup, [button, popup] {
    popup->adjustSize();
    popup->move(placeOf(*button, popup->size()));
    popup->show();
    if (auto* first = popup->nextInFocusChain()) first->setFocus(Qt::PopupFocusReason);
  });
  return button;
}

}  // namespace kvr::window
