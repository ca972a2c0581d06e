#include "shell/qt/verdict_view.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace kvr::window {
namespace {

using download::VerdictKind;

struct Look {
  const char* word;
  QColor back;
  QColor fore;
};

Look lookOf(VerdictKind kind) {
  switch (kind) {
    case VerdictKind::Waiting:
      return {"WAITING", QColor(0xff, 0xc1, 0x07), QColor(0x1a, 0x1a, 0x1a)};
    case VerdictKind::Working:
      return {"WORKING", QColor(0x0b, 0x5e, 0xd7), Qt::white};
    case VerdictKind::Pass:
      return {"PASS", QColor(0x0f, 0x7b, 0x2f), Qt::white};
    case VerdictKind::PassInPart:
      return {"PASS,\nPART LEFT OUT", QColor(0xf0, 0x8c, 0x00), QColor(0x1a, 0x1a, 0x1a)};
    case VerdictKind::Fail:
      return {"FAIL", QColor(0xb7, 0x10, 0x10), Qt::white};
    case VerdictKind::Idle:
      break;
  }
  return {"READY", QColor(0x6c, 0x75, 0x7d), Qt::white};
}

// Ready: a ring. Waiting: an hourglass. Working: an arrow down. Pass: a tick; in part: in a broken ring. Fail: a cross.
void drawShape(QPainter& painter, VerdictKind kind, const QRectF& box) {
  const qreal x = box.x(), y = box.y(), w = box.width(), h = box.height();
  const auto at = [&](qreal fx, qreal fy) { return QPointF(x + fx * w, y + fy * h); };
  QPainterPath path;
  switch (kind) {
    case VerdictKind::Pass:
      path.moveTo(at(0.08, 0.55));
      path.lineTo(at(0.38, 0.85));
      path.lineTo(at(0.92, 0.18));
      break;
    case VerdictKind::PassInPart:
      path.arcMoveTo(box, 20);
      path.arcTo(box, 20, 250);
      path.moveTo(at(0.25, 0.52));
      path.lineTo(at(0.45, 0.7));
      path.lineTo(at(0.8, 0.28));
      break;
    case VerdictKind::Fail:
      path.moveTo(at(0.14, 0.14));
      path.lineTo(at(0.86, 0.86));
      path.moveTo(at(0.86, 0.14));
      path.lineTo(at(0.14, 0.86));
      break;
    case VerdictKind::Waiting:
      path.moveTo(at(0.22, 0.08));
      path.lineTo(at(0.78, 0.08));
      path.lineTo(at(0.22, 0.92));
      path.lineTo(at(0.78, 0.92));
      path.closeSubpath();
      break;
    case VerdictKind::Working:
      path.moveTo(at(0.5, 0.06));
      path.lineTo(at(0.5, 0.9));
      path.moveTo(at(0.14, 0.56));
      path.lineTo(at(0.5, 0.92));
      path.lineTo(at(0.86, 0.56));
      break;
    case VerdictKind::Idle:
      path.addEllipse(box.adjusted(w * 0.12, h * 0.12, -w * 0.12, -h * 0.12));
      break;
  }
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(path);
}

}  // namespace

VerdictView::VerdictView(platform::EventLoop& loop, download::Verdict& verdict, platform::Button& lastRun)
    : loop_(loop), verdict_(verdict), lastRun_(lastRun) {
  setObjectName(QStringLiteral("verdict"));
  setAccessibleName(QStringLiteral("Verdict"));
  setAccessibleDescription(word());
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
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
  return QString::fromLatin1(lookOf(verdict_.value()).word).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

QSize VerdictView::sizeHint() const {
  return {fontMetrics().height() * 13, fontMetrics().height() * 11};
}
QSize VerdictView::minimumSizeHint() const {
  return {fontMetrics().height() * 10, fontMetrics().height() * 6};
}

void VerdictView::paintEvent(QPaintEvent*) {
  const Look look = lookOf(verdict_.value());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(look.back);
  const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1);
  painter.drawRoundedRect(area, 8, 8);

  QFont font = painter.font();
  font.setBold(true);
  font.setPixelSize(100);
  const QString word = QString::fromLatin1(look.word);
  const QSizeF size = QFontMetricsF(font).size(0, word);
  const qreal lines = static_cast<qreal>(word.count(QLatin1Char('\n')) + 1);
  const qreal wanted = std::min(area.width() * 0.9 / size.width() * 100, area.height() * 0.34 / lines);
  font.setPixelSize(std::max(12, static_cast<int>(wanted)));
  const qreal wordHeight = QFontMetricsF(font).size(0, word).height();
  const QRectF wordBox(area.x(), area.bottom() - wordHeight - area.height() * 0.04, area.width(), wordHeight);
  painter.setFont(font);
  painter.setPen(look.fore);
  painter.drawText(wordBox, Qt::AlignCenter, word);

  const qreal room = wordBox.top() - area.top();
  const qreal side = std::min(room * 0.78, area.width() * 0.7);
  painter.setPen(QPen(look.fore, std::max<qreal>(3, side * 0.12), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  drawShape(painter, verdict_.value(),
            QRectF(area.center().x() - side / 2, area.top() + (room - side) * 0.6, side, side));
}

}  // namespace kvr::window
