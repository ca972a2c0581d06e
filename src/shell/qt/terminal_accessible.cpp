// What assistive programs see of the receive pane: its whole text, in the lines that it shows. As in any terminal the
// cursor is where the next text will appear, unless something is selected.
#include <algorithm>

#include "shell/qt/terminal_view.h"

namespace kvr::window {

namespace {

QString textOf(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

class AccessibleTerminal : public AccessibleTextArea {
 public:
  explicit AccessibleTerminal(TerminalView& view) : AccessibleTextArea(&view, QAccessible::Terminal), view_(view) {}
  using AccessibleTextArea::text;

  int characterCount() const override { return offsetOf(content().end()); }
  QString text(int start, int end) const override {
    start = std::max(0, start);
    return textOf(content().all()).mid(start, std::max(0, end - start));
  }
  QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start, int* end) const override {
    if (boundary == QAccessible::LineBoundary) return line(lineAt(offset), start, end);
    return QAccessibleTextInterface::textAtOffset(offset, boundary, start, end);
  }
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* start, int* end) const override {
    if (boundary == QAccessible::LineBoundary) return line(lineAt(offset) - 1, start, end);
    return QAccessibleTextInterface::textBeforeOffset(offset, boundary, start, end);
  }
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* start, int* end) const override {
    if (boundary == QAccessible::LineBoundary) return line(lineAt(offset) + 1, start, end);
    return QAccessibleTextInterface::textAfterOffset(offset, boundary, start, end);
  }

  int cursorPosition() const override {
    return view_.pane().selection().empty() ? characterCount() : offsetOf(view_.pane().caret());
  }
  void setCursorPosition(int offset) override { view_.scrollTo(positionOf(offset)); }
  void scrollToSubstring(int start, int) override { view_.scrollTo(positionOf(start)); }

  int selectionCount() const override { return view_.pane().selection().empty() ? 0 : 1; }
  void selection(int, int* start, int* end) const override {
    *start = *end = 0;
    if (selectionCount() == 0) return;
    *start = offsetOf(view_.pane().selection().from);
    *end = offsetOf(view_.pane().selection().to);
  }
  void addSelection(int start, int end) override { view_.pane().select(positionOf(start), positionOf(end)); }
  void removeSelection(int) override { view_.pane().select(view_.pane().caret(), view_.pane().caret()); }

  QRect characterRect(int offset) const override {
    const QRect cell = view_.cellRect(positionOf(offset));
    return {view_.viewport()->mapToGlobal(cell.topLeft()), cell.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    const int half = view_.cellRect(content().begin()).width() / 2;  // the character under the point, not the next gap
    return offsetOf(view_.positionAt(view_.viewport()->mapFromGlobal(point) - QPoint(half, 0)));
  }

 private:
  using Position = TerminalView::Position;
  const comtool::PaneText& content() const { return view_.pane().content(); }
  int offsetOf(Position position) const {
    return static_cast<int>(textOf(content().slice({content().begin(), position})).size());
  }
  // Of a character in two units its start.
  Position positionOf(int offset) const {
    QString before = text(0, offset);
    if (!before.isEmpty() && before.back().isHighSurrogate()) before.chop(1);
    return content().begin() + static_cast<Position>(before.toUtf8().size());
  }
  // After a line end at the end of the text there is one more line, which is empty.
  int lineAt(int offset) const {
    const Position position = positionOf(offset);
    const bool behind =
        position == content().end() && content().rowCount() > 0 && content().row(content().rowCount() - 1).endBytes > 0;
    return static_cast<int>(behind ? content().rowCount() : content().rowAt(position));
  }
  QString line(int index, int* start, int* end) const {
    const int rows = static_cast<int>(content().rowCount());
    *start = *end = index == rows ? characterCount() : -1;
    if (index < 0 || index >= rows) return {};
    const auto& row = content().row(static_cast<std::size_t>(index));
    const QString shown = textOf(row.text);
    *start = offsetOf(row.start);
    *end = *start + static_cast<int>(shown.size());
    return shown;
  }

  TerminalView& view_;
};

}  // namespace

QAccessibleInterface* TerminalView::makeAccessible() {
  return new AccessibleTerminal(*this);
}

// What is new is told as it comes, so that it can be read out.
void TerminalView::tellText() {
  const auto& text = pane_.content();
  const Position from = std::max(told_, text.begin());
  const auto selection = pane_.selection();
  const bool selected = !(selection == toldSelection_);
  told_ = text.end();
  toldSelection_ = selection;
  if (!QAccessible::isActive()) return;
  const auto offsetOf = [&](Position position) {
    return static_cast<int>(textOf(text.slice({text.begin(), position})).size());
  };
  if (from < text.end()) {
    QAccessibleTextInsertEvent event(this, offsetOf(from), textOf(text.slice({from, text.end()})));
    QAccessible::updateAccessibility(&event);
  }
  if (!selected) return;
  QAccessibleTextSelectionEvent event(this, offsetOf(selection.from), offsetOf(selection.to));
  QAccessible::updateAccessibility(&event);
}

}  // namespace kvr::window
