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

namespace {

// Styles draw edges in shades of the page, and black has none.
bool isBlack(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 24;
}

void drawEdge(QPainter& painter, const QStyleOption& option, bool round) {
  const QRectF edge = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, round);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(edgeOf(option.palette), round ? 1.4 : 1));
  if (round)
    painter.drawEllipse(edge.adjusted(0.5, 0.5, -0.5, -0.5));
  else
    painter.drawRect(edge);
  painter.restore();
}

}  // namespace

void ClearMarks::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool box = element == PE_FrameLineEdit || element == PE_PanelButtonCommand || element == PE_Frame;
  if (element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton || (box && isBlack(option->palette)))
    drawEdge(*painter, *option, element == PE_IndicatorRadioButton);
}

// On black the chosen tab looks like the others.
void ClearMarks::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  QProxyStyle::drawControl(element, option, painter, widget);
  if (element != CE_TabBarTabShape || !isBlack(option->palette)) return;
  drawEdge(*painter, *option, false);
  const QRect& tab = option->rect;
  if (option->state & State_Selected)
    painter->fillRect(tab.left(), tab.top(), tab.width(), 3, option->palette.color(QPalette::Highlight));
}

void ClearMarks::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control != CC_ScrollBar || !isBlack(option->palette)) return;
  QStyleOption slider(*option);
  slider.rect = proxy()->subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget);
  drawEdge(*painter, slider, false);
}

int ClearMarks::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* more) const {
  return hint == SH_ScrollBar_ContextMenu ? 0 : QProxyStyle::styleHint(hint, option, widget, more);
}

// Eight tabs side by side on a small screen.
int ClearMarks::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  const int usual = QProxyStyle::pixelMetric(metric, option, widget);
  return metric == PM_TabBarTabHSpace ? usual / 2 : usual;
}

void useClearMarks() {
  if (!dynamic_cast<ClearMarks*>(QApplication::style())) QApplication::setStyle(new ClearMarks);
}

}  // namespace kvr::window
