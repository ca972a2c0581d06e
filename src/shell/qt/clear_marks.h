// The desktop's style, with edges that are easy to see: many a dark theme draws an empty box darker than its page, and
// on black most edges are black. Tabs are narrower.
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace kvr::window {

// Between the page and its text, nearer to the text: an edge that is at least three times as bright or dark as the
// page.
QColor edgeOf(const QPalette& palette);

class ClearMarks : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  // A scroll bar's own menu is a loop of its own, in which no run would go on; it gets none.
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* more) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

// For the whole program; once is enough.
void useClearMarks();

}  // namespace kvr::window
