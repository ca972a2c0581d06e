#include "stations/window/elided_label.h"

#include <QFontMetrics>
#include <QPainter>

namespace kvr::tiles {

ElidedLabel::ElidedLabel(Qt::Alignment alignment) : alignment_(alignment) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
}

void ElidedLabel::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setToolTip(text);
  setAccessibleName(text);
  updateGeometry();
  update();
}

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text_) + 2, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().height() * 2, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  if (height() < fontMetrics().ascent()) return;  // half a line is none
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect(), static_cast<int>(alignment_ | Qt::AlignVCenter),
                   fontMetrics().elidedText(text_, Qt::ElideRight, width()));
}

}  // namespace kvr::tiles
