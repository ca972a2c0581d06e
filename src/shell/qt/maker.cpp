#include "shell/qt/maker.h"

#include <QScrollArea>
#include <QTextDocument>

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
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
  if (widget) label->setBuddy(widget);
  return label;
}

QWidget* together(QWidget* caption, QWidget* box) {
  auto* both = new QWidget;
  both->setLayout(row({caption, box}));
  return both;
}

void setPlainTip(QWidget& widget, const QString& text) {
  widget.setToolTip(Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text);
}

void follow(QWidget* widget, platform::Control& control, const std::function<void()>& show) {
  auto token = std::make_shared<platform::Signal::Token>(control.changed.watch(show));
  QObject::connect(widget, &QObject::destroyed, widget, [token] { token->reset(); });
  show();
}

QLabel* note(const QString& text) {
  auto* label = new SelectableLabel;
  label->setTextFormat(Qt::PlainText);
  label->setText(text);
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
