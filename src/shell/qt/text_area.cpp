#include "shell/qt/text_area.h"

#include <QFontDatabase>
#include <algorithm>

namespace kvr::window {

namespace {

QAccessibleInterface* make(const QString&, QObject* object) {
  auto* area = dynamic_cast<TextArea*>(object);
  return area != nullptr ? area->makeAccessible() : nullptr;
}

}  // namespace

TextArea::TextArea() {
  [[maybe_unused]] static const bool known = (QAccessible::installFactory(make), true);
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPointSizeF(std::max(fixed.pointSizeF(), font().pointSizeF()));  // where only the other one was enlarged
  setFont(fixed);
  setFocusPolicy(Qt::StrongFocus);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  viewport()->setCursor(Qt::IBeamCursor);
}

void TextArea::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  fit();
}

void TextArea::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() != QEvent::FontChange) return;
  measureFont();
  fit();
}

void TextArea::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void TextArea::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

void* AccessibleTextArea::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QAccessible::State AccessibleTextArea::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.multiLine = true;
  state.selectableText = true;
  return state;
}

QString AccessibleTextArea::attributes(int offset, int* start, int* end) const {
  *start = offset;
  *end = offset + 1;
  return {};
}

}  // namespace kvr::window
