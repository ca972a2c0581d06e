#include "shell/qt/verdict_view.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "signs/sign_paint.h"

namespace kvr::window {
namespace {

using download::VerdictKind;

signs::Sign signOf(VerdictKind kind) {
  switch (kind) {
    case VerdictKind::Waiting:
      return signs::Sign::Waiting;
    case VerdictKind::Working:
      return signs::Sign::Working;
    case VerdictKind::Pass:
      return signs::Sign::Pass;
    case VerdictKind::PassInPart:
      return signs::Sign::PassInPart;
    case VerdictKind::Fail:
      return signs::Sign::Fail;
    case VerdictKind::Idle:
      break;
  }
  return signs::Sign::Ready;
}

}  // namespace

VerdictView::VerdictView(platform::EventLoop& loop, download::Verdict& verdict, platform::Button& lastRun)
    : loop_(loop), verdict_(verdict), lastRun_(lastRun) {
  setObjectName(QStringLiteral("verdict"));
  setAccessibleName(QStringLiteral("Verdict"));
  setAccessibleDescription(word());
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
  token_ = verdict_.changed.watch([this] {
    setAccessibleDescription(word());
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
    update();
  });
  buttonToken_ = lastRun_.changed.watch([this] { followButton(); });
  followButton();
}

void VerdictView::followButton() {
  const bool on = lastRun_.enabled();
  setCursor(on ? Qt::PointingHandCursor : Qt::ArrowCursor);
  setToolTip(on ? QStringLiteral("Shows the last run as a picture") : QString());
}

void VerdictView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !rect().contains(event->pos())) return;
  loop_.post([&button = lastRun_] { button.press(); });
}

QString VerdictView::word() const {
  return QString::fromLatin1(signs::wordOf(signOf(verdict_.value())));
}

QSize VerdictView::sizeHint() const {
  return {fontMetrics().height() * 13, fontMetrics().height() * 11};
}
QSize VerdictView::minimumSizeHint() const {
  return {fontMetrics().height() * 10, fontMetrics().height() * 5};
}

void VerdictView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect sign(0, 0, width(), std::min(height(), width() * 5 / 4));  // in a high window not a slab
  signs::paintSign(painter, QRectF(sign).adjusted(1, 1, -1, -1), signOf(verdict_.value()),
                   signs::Layout::ShapeAboveWord);
}

}  // namespace kvr::window
