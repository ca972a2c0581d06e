#include "signs/sign_paint.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>

namespace kvr::signs {
namespace {

// Ready: a ring. Waiting: an hourglass. Working: an arrow down. Batch full: a full crate. Pass: a tick; in part: in a
// broken ring. Fail: a cross.
QPainterPath shapeOf(Sign sign, const QRectF& box) {
  const auto at = [&](qreal fx, qreal fy) { return QPointF(box.x() + fx * box.width(), box.y() + fy * box.height()); };
  const auto lines = [&](QPainterPath& path, std::initializer_list<QPointF> points) {
    path.moveTo(*points.begin());
    for (const QPointF& point : points) path.lineTo(point);
  };
  QPainterPath path;
  switch (sign) {
    case Sign::Pass:
      lines(path, {at(0.08, 0.55), at(0.38, 0.85), at(0.92, 0.18)});
      break;
    case Sign::PassInPart:
      path.arcMoveTo(box, 20);
      path.arcTo(box, 20, 250);
      lines(path, {at(0.25, 0.52), at(0.45, 0.7), at(0.8, 0.28)});
      break;
    case Sign::Fail:
      lines(path, {at(0.14, 0.14), at(0.86, 0.86)});
      lines(path, {at(0.86, 0.14), at(0.14, 0.86)});
      break;
    case Sign::Waiting:
      lines(path, {at(0.22, 0.08), at(0.78, 0.08), at(0.22, 0.92), at(0.78, 0.92)});
      path.closeSubpath();
      break;
    case Sign::Working:
      lines(path, {at(0.5, 0.06), at(0.5, 0.9)});
      lines(path, {at(0.14, 0.56), at(0.5, 0.92), at(0.86, 0.56)});
      break;
    case Sign::BatchFull:
      lines(path, {at(0.06, 0.1), at(0.06, 0.92), at(0.94, 0.92), at(0.94, 0.1)});
      for (const double y : {0.22, 0.44, 0.66}) lines(path, {at(0.28, y), at(0.72, y)});
      break;
    case Sign::Ready:
      path.addEllipse(box.adjusted(box.width() * 0.12, box.height() * 0.12, -box.width() * 0.12, -box.height() * 0.12));
      break;
  }
  return path;
}

// The longest word in two lines, but for where one line has the larger letters.
QString wordIn(Sign sign, const QSizeF& area) {
  constexpr qreal kFlat = 7;  // width to height
  const bool two = sign == Sign::PassInPart && area.width() < area.height() * kFlat;
  return two ? QStringLiteral("PASS,\nPART LEFT OUT") : QString::fromLatin1(wordOf(sign));
}

// The largest bold type in which the word fits.
QFont fontFor(QFont font, const QString& word, const QSizeF& room) {
  font.setBold(true);
  font.setPixelSize(100);
  const QSizeF size = QFontMetricsF(font).size(0, word);
  const qreal wanted = std::min(room.width() / size.width(), room.height() / size.height()) * 100;
  font.setPixelSize(std::max(12, static_cast<int>(wanted)));
  return font;
}

}  // namespace

SignColours coloursOf(Sign sign) {
  switch (sign) {
    case Sign::Waiting:
      return {QColor(0xff, 0xc1, 0x07), QColor(0x1a, 0x1a, 0x1a)};
    case Sign::Working:
      return {QColor(0x0b, 0x5e, 0xd7), Qt::white};
    case Sign::BatchFull:
      return {QColor(0x5a, 0x3d, 0x8a), Qt::white};
    case Sign::Pass:
      return {QColor(0x0f, 0x7b, 0x2f), Qt::white};
    case Sign::PassInPart:
      return {QColor(0xf0, 0x8c, 0x00), QColor(0x1a, 0x1a, 0x1a)};
    case Sign::Fail:
      return {QColor(0xb7, 0x10, 0x10), Qt::white};
    case Sign::Ready:
      break;
  }
  return {QColor(0x6c, 0x75, 0x7d), Qt::white};
}

void paintSign(QPainter& painter, const QRectF& area, Sign sign, Layout layout) {
  const SignColours colours = coloursOf(sign);
  const bool beside = layout == Layout::ShapeBesideWord;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.back);
  painter.drawRoundedRect(area, 8, 8);

  const QString word = wordIn(sign, area.size());
  const qreal lines = static_cast<qreal>(word.count(QLatin1Char('\n')) + 1);
  const qreal side = beside ? std::min(area.height() * 0.6, area.width() * 0.2) : 0;
  const qreal left = area.left() + (beside ? side * 1.7 : 0);
  const QSizeF room = beside ? QSizeF(area.right() - left - side * 0.3, area.height() * 0.84)
                             : QSizeF(area.width() * 0.9, area.height() * 0.4 * std::min<qreal>(lines, 1.2));
  painter.setFont(fontFor(painter.font(), word, room));
  const qreal wordHeight = QFontMetricsF(painter.font()).size(0, word).height();
  const QRectF wordBox =
      beside ? QRectF(left, area.top(), room.width(), area.height())
             : QRectF(area.x(), area.bottom() - wordHeight - area.height() * 0.04, area.width(), wordHeight);
  painter.setPen(colours.fore);
  painter.drawText(wordBox, Qt::AlignCenter, word);

  const qreal above = wordBox.top() - area.top();
  const qreal edge = beside ? side : std::min(above * 0.78, area.width() * 0.7);
  const QRectF shape = beside ? QRectF(area.left() + side * 0.5, area.center().y() - edge / 2, edge, edge)
                              : QRectF(area.center().x() - edge / 2, area.top() + (above - edge) * 0.6, edge, edge);
  painter.setPen(QPen(colours.fore, std::max<qreal>(3, edge * 0.12), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(shapeOf(sign, shape));
}

}  // namespace kvr::signs
