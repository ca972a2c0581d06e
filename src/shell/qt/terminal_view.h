// The receive pane on the screen. It draws the rows that are visible and no others, whatever lies above them; it
// follows the end until the user scrolls up (the box "Auto scroll" shows and sets it). Text is selected with the
// mouse and copied; typed keys go to the pane's handler as gestures.
#pragma once

#include "comtool/tool_panel.h"
#include "platform/event_loop.h"
#include "shell/qt/binding.h"
#include "shell/qt/text_area.h"

namespace kvr::window {

class TerminalView : public TextArea {
 public:
  using Position = comtool::PaneText::Position;
  TerminalView(platform::EventLoop& loop, comtool::ReceivePane& pane, platform::CheckBox& autoScroll);
  ~TerminalView() override {
    pane_.revealRequest = {};
    pane_.pasteRequest = {};
  }

  void copy() const;  // the selected text, to the clipboard
  void paste();       // what the clipboard holds goes out
  void selectAll();
  QString selectedText() const;
  // Rows that fit into the viewport, and the first one that shows.
  int visibleRows() const;
  int firstRow() const;
  QString visibleText() const;  // its rows, each with a line end

  // For assistive programs: what is in the pane and where it lies on the viewport; also outside of it.
  comtool::ReceivePane& pane() { return pane_; }
  QRect cellRect(Position position) const;
  Position positionAt(QPoint point) const;  // of the gap between two characters that is nearest
  void scrollTo(Position position);         // as the user would
  QAccessibleInterface* makeAccessible() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void measureFont() override;
  void fit() override;
  void scrollContentsBy(int dx, int dy) override;
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void textChanged();
  void tellText();
  void reveal(Position position);
  void scrolledByPerson();
  void keepTop();
  void typed(const QString& text);
  bool editedByKey(QKeyEvent& event);
  bool scrolledByKey(QKeyEvent& event);
  bool sentByKey(QKeyEvent& event);
  void send(std::string_view bytes);
  void selectTo(Position position);

  platform::EventLoop& loop_;
  comtool::ReceivePane& pane_;
  platform::CheckBox& autoScroll_;
  Binding* binding_;
  double cellWidth_ = 8;
  int rowHeight_ = 16;
  int ascent_ = 12;
  Position told_ = 0;  // up to where assistive programs have been told of the text
  comtool::PaneText::Range toldSelection_;
  Position top_ = 0;       // of the first visible row: it stays in sight when old text goes or the width changes
  bool following_ = true;  // what the box says, or will say once the user's scrolling has been handled
  bool moving_ = false;    // the scroll bar is moved by this code, not by the user
};

// The pane for the terminal's page.
TerminalView* makeTerminalView(platform::EventLoop& loop, comtool::ToolPanel& panel);

}  // namespace kvr::window
