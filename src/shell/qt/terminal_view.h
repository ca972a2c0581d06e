// The receive pane on the screen. It draws the rows that are visible and no others, whatever lies above them; it
// follows the end until the person scrolls up (the box "Auto scroll" shows and sets it). Text is selected with the
// mouse and copied; typed keys go to the pane's handler as gestures.
#pragma once

#include <QAbstractScrollArea>

#include "comtool/tool_panel.h"
#include "platform/event_loop.h"
#include "shell/qt/binding.h"

namespace kvr::window {

class TerminalView : public QAbstractScrollArea {
 public:
  TerminalView(platform::EventLoop& loop, comtool::ReceivePane& pane, platform::CheckBox& autoScroll);
  ~TerminalView() override { pane_.revealRequest = {}; }

  void copy() const;  // the selected text, to the clipboard
  void selectAll();
  QString selectedText() const;
  // Rows that fit into the viewport, and the first one that shows.
  int visibleRows() const;
  int firstRow() const;
  // For accessibility: the text that shows now.
  QString visibleText() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  using Position = comtool::PaneText::Position;
  void textChanged();
  void measureFont();
  void layOut();
  void reveal(Position position);
  void scrolledByPerson();
  void keepTop();
  void typed(const QString& text);
  bool scrolledByKey(QKeyEvent& event);
  Position positionAt(QPoint point) const;
  void selectTo(Position position);

  platform::EventLoop& loop_;
  comtool::ReceivePane& pane_;
  platform::CheckBox& autoScroll_;
  Binding* binding_;
  double cellWidth_ = 8;
  int rowHeight_ = 16;
  int ascent_ = 12;
  Position top_ = 0;       // of the first visible row: it stays in sight when old text goes or the width changes
  bool following_ = true;  // what the box says, or will say once the person's scrolling has been handled
  bool moving_ = false;    // the scroll bar is moved by this code, not by the person
};

// The pane for the terminal's page.
TerminalView* makeTerminalView(platform::EventLoop& loop, comtool::ToolPanel& panel);

}  // namespace kvr::window
