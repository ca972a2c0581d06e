// What the views of much text have in common: a scrolled area that draws rows of a fixed width font by itself, takes
// the keyboard, and is a text to assistive programs.
#pragma once

#include <QAbstractScrollArea>
#include <QAccessibleWidget>

namespace kvr::window {

class TextArea : public QAbstractScrollArea {
 public:
  TextArea();
  // What assistive programs see of the text; Qt asks once and owns it.
  virtual QAccessibleInterface* makeAccessible() = 0;

 protected:
  // The font is another, the viewport has another size. Not pure: Qt tells of the first font during construction.
  virtual void measureFont() {}
  virtual void fit() {}
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};

// Offsets are UTF-16 units from the start of the text.
class AccessibleTextArea : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  using QAccessibleWidget::QAccessibleWidget;
  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  using QAccessibleTextInterface::text;
  using QAccessibleWidget::text;

  void setSelection(int, int start, int end) override { addSelection(start, end); }
  QString attributes(int offset, int* start, int* end) const override;
};

}  // namespace kvr::window
