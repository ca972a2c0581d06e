#include "shell/qt/clear_marks.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace kvr::window {

QColor edgeOf(const QPalette& palette) {
  const QColor page = palette.color(QPalette::Window);
  const QColor text = palette.color(QPalette::WindowText);
  const auto between = [](int from, int to) { return (from * 2 + to * 3) / 5; };
  return {between(page.red(), text.red()), between(page.green(), text.green()), between(page.blue(), text.blue())};
}

void ClearMarks::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) return;
  const bool round = element == PE_IndicatorRadioButton;
  const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing, round);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(QPen(edgeOf(option->palette), round ? 1.4 : 1));
  if (round)
    painter->drawEllipse(edge.adjusted(0.5, 0.5, -0.5, -0.5));
  else
    painter->drawRect(edge);
  painter->restore();
}

void useClearMarks() {
  if (!dynamic_cast<ClearMarks*>(QApplication::style())) QApplication::setStyle(new ClearMarks);
}

}  // namespace kvr::window
