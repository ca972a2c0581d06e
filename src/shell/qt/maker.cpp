#include "shell/qt/maker.h"

#include <QScrollArea>

namespace kvr::window {

QLineEdit* Maker::line(platform::TextBox& control, const QString& name, int columns) const {
  auto* edit = makeLine(loop(), control, name);
  if (columns > 0) edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QString(columns, QLatin1Char('0'))) + 12);
  return edit;
}

QHBoxLayout* row(std::initializer_list<QWidget*> widgets) {
  auto* layout = new QHBoxLayout;
  layout->setContentsMargins(0, 0, 0, 0);
  for (auto* widget : widgets) {
    if (widget)
      layout->addWidget(widget);
    else
      layout->addStretch(1);
  }
  return layout;
}

QLabel* captionFor(const QString& text, QWidget* widget) {
  auto* label = new QLabel(text);
  label->setBuddy(widget);
  return label;
}

QLabel* note(const QString& text) {
  auto* label = new SelectableLabel(text);
  label->setWordWrap(true);
  return label;
}

QWidget* page(const char* name, QLayout* layout) {
  auto* widget = new QWidget;
  widget->setObjectName(QString::fromLatin1(name));
  layout->setContentsMargins(8, 8, 8, 8);
  widget->setLayout(layout);
  return widget;
}

QWidget* scrolling(QWidget* inner) {
  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidget(inner);
  return area;
}

}  // namespace kvr::window
