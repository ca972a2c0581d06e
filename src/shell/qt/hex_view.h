// An image in hexadecimal: address, sixteen bytes, the same as text. Draws only the lines that show, so its cost does
// not depend on the size of the image. All it shows lies in the pane's model; all that the user does goes to the pane
// as a gesture.
//
// Keys: arrows, page and line keys (with Shift they select), Ctrl+Home and Ctrl+End, hexadecimal digits change the
// byte, Ctrl+Z and Ctrl+Shift+Z (or Ctrl+Y) take a change back and make it again, Ctrl+A, Ctrl+C (the selection as
// hexadecimal text), Ctrl+F, Ctrl+G, F3 and Shift+F3, Ctrl+D (compare with a file), F8 and Shift+F8 (differences).
#pragma once

#include "images/copy_text.h"
#include "images/hex_pane_view.h"
#include "platform/controls.h"
#include "platform/event_loop.h"
#include "shell/qt/binding.h"
#include "shell/qt/hex_accessible.h"
#include "shell/qt/hex_paint.h"
#include "shell/qt/text_area.h"

namespace kvr::window {

class HexView : public TextArea {
  Q_OBJECT
 public:
  // `bar`: the scroll position in lines, which the view and its owner share. Both controls must outlive the view.
  HexView(platform::EventLoop& loop, images::HexPane& pane, platform::ScrollBar& bar, const QString& name);

  images::HexPane& pane() { return pane_; }
  const images::HexViewModel& model() const { return pane_.model; }
  QRect cellRect(images::HexSpot spot) const;  // on the viewport; also outside of it
  images::HexSpot spotAt(const QPoint& point) const;
  void copySelection() const;
  void copyAs(images::CopyForm form) const;
  QAccessibleInterface* makeAccessible() override { return accessibleHexView(*this); }
  // Moves the caret by `change` (find, go to) and scrolls it into view. `change` runs from the event loop.
  void moveBy(std::function<void(images::HexViewModel&)> change);
  void compare();
  void toDifference(bool forward);

 Q_SIGNALS:
  void findWanted();
  void goToWanted();
  void findAgain(bool forward);
  void shown();  // what the model holds may be another

 protected:
  void paintEvent(QPaintEvent* event) override;
  void measureFont() override { geometry_ = HexGeometry(font()); }
  void fitFont();
  void fit() override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  QSize sizeHint() const override;

 private:
  void showModel();
  void tellCaret();
  bool command(QKeyEvent* event);
  bool changes(const QKeyEvent& event);
  platform::EventLoop& loop_;
  images::HexPane& pane_;
  platform::ScrollBar& bar_;
  HexGeometry geometry_;
  Binding* binding_ = nullptr;
  images::HexSpot toldCaret_{-1, false};
};

// The view with its find bar below, as one widget.
QWidget* makeHexPage(platform::EventLoop& loop, images::HexPane& pane, platform::ScrollBar& bar, const QString& name);

}  // namespace kvr::window
