// The desktop's style, with edges around check boxes and radio buttons that are easy to see: many a dark theme draws an
// empty box darker than its page.
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
};

// For the whole program; once is enough.
void useClearMarks();

}  // namespace kvr::window
