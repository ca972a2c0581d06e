#include "shell/qt/terminal_view.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "comtool/text_cells.h"
#include "shell/qt/calm_scroll_bar.h"
#include "shell/qt/terminal_row.h"

namespace kvr::window {

namespace {

int rowNumber(std::size_t row) {
  return static_cast<int>(row);
}

}  // namespace

TerminalView::TerminalView(platform::EventLoop& loop, comtool::ReceivePane& pane, platform::CheckBox& autoScroll)
    : loop_(loop), pane_(pane), autoScroll_(autoScroll) {
  setVerticalScrollBar(new CalmScrollBar(this));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAttribute(Qt::WA_InputMethodEnabled);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  measureFont();
  binding_ = new Binding(loop, pane, *this, QStringLiteral("Received text; keys typed here are sent"),
                         [this] { textChanged(); });
  binding_->watch(pane.appended, [this] { textChanged(); });
  binding_->watch(autoScroll.changed, [this] {
    following_ = autoScroll_.value();
    textChanged();
  });
  pane.revealRequest = [this](Position position) { reveal(position); };
  pane.pasteRequest = [this] { paste(); };
}

void TerminalView::measureFont() {
  const QFontMetricsF metrics(font());
  cellWidth_ = std::max(1.0, metrics.horizontalAdvance(QStringLiteral("0000000000")) / 10);
  rowHeight_ = std::max(1, static_cast<int>(std::ceil(metrics.lineSpacing())));
  ascent_ = static_cast<int>(std::ceil(metrics.ascent()));
}

int TerminalView::visibleRows() const {
  return std::max(1, viewport()->height() / rowHeight_);
}
int TerminalView::firstRow() const {
  return verticalScrollBar()->value();
}
QString TerminalView::selectedText() const {
  return QString::fromStdString(pane_.selectedText());
}

// Costs the same however much text there is: the range of the scroll bar, and a repaint that Qt puts off.
void TerminalView::textChanged() {
  moving_ = true;
  const auto& text = pane_.content();
  const int last = std::max(0, rowNumber(text.rowCount()) - visibleRows());
  const int first = following_ ? last : rowNumber(text.rowAt(top_));  // asked first: a new range moves the bar
  verticalScrollBar()->setPageStep(visibleRows());
  verticalScrollBar()->setRange(0, last);
  verticalScrollBar()->setValue(first);
  moving_ = false;
  keepTop();
  viewport()->update();
  tellText();
}

void TerminalView::fit() {
  pane_.setWidth(static_cast<int>(viewport()->width() / cellWidth_));
  textChanged();
}

// Called for every move of the scroll bar. A move by the user decides whether the view follows the end.
void TerminalView::scrollContentsBy(int, int) {
  if (!moving_) scrolledByPerson();
  keepTop();
  viewport()->update();
}

void TerminalView::keepTop() {
  const auto& text = pane_.content();
  const auto row = static_cast<std::size_t>(firstRow());
  top_ = row < text.rowCount() ? text.row(row).start : text.end();
}

void TerminalView::scrolledByPerson() {
  const bool atEnd = firstRow() >= verticalScrollBar()->maximum();
  if (atEnd == following_) return;
  following_ = atEnd;
  loop_.post([&box = autoScroll_, atEnd] { box.userSet(atEnd); });
}

void TerminalView::scrollTo(Position position) {
  const int row = rowNumber(pane_.content().rowAt(position));
  if (row >= firstRow() && row < firstRow() + visibleRows()) return;
  verticalScrollBar()->setValue(row - visibleRows() / 2);
}

void TerminalView::reveal(Position position) {
  moving_ = true;
  scrollTo(position);
  moving_ = false;
}

QRect TerminalView::cellRect(Position position) const {
  const auto& text = pane_.content();
  if (text.rowCount() == 0) return {0, 0, static_cast<int>(cellWidth_), rowHeight_};
  const std::size_t index = text.rowAt(position);
  const auto& row = text.row(index);
  const int column = comtool::columnAt(row.shown(), position - std::min(position, row.start));
  const int y = (rowNumber(index) - firstRow()) * rowHeight_;
  return QRectF(column * cellWidth_, y, cellWidth_, rowHeight_).toAlignedRect();
}

void TerminalView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setFont(font());
  // Row by row: higher areas Qt hands to a pool of threads, whose waking costs more than the filling.
  for (int y = event->rect().top() / rowHeight_ * rowHeight_; y <= event->rect().bottom(); y += rowHeight_)
    painter.fillRect(0, y, viewport()->width(), rowHeight_, palette().base());
  const auto& text = pane_.content();
  const auto selection = pane_.selection();
  const CellMetrics cell{cellWidth_, rowHeight_, ascent_};
  const int firstLine = event->rect().top() / rowHeight_;
  const int lastLine = event->rect().bottom() / rowHeight_;
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text));
  for (int line = firstLine; line <= lastLine; ++line) {
    const auto index = static_cast<std::size_t>(firstRow() + line);
    if (index >= text.rowCount()) break;
    const auto& row = text.row(index);
    drawCells(painter, cell, line * rowHeight_, row.shown());
    if (selection.empty() || selection.from >= row.end() || selection.to <= row.start) continue;
    const int from = selection.from <= row.start ? 0 : comtool::columnAt(row.shown(), selection.from - row.start);
    const bool whole = selection.to >= row.end();
    const int to =
        whole ? row.columns + (row.endBytes ? 1 : 0) : comtool::columnAt(row.shown(), selection.to - row.start);
    drawSelected(painter, cell, line * rowHeight_, row.shown(), from, to, palette());
  }
  if (!hasFocus() || text.rowCount() == 0) return;
  const auto& end = text.row(text.rowCount() - 1);
  const int line = rowNumber(text.rowCount()) - 1 - firstRow() + (end.endBytes ? 1 : 0);
  painter.drawRect(
      QRectF((end.endBytes ? 0 : end.columns) * cellWidth_, line * rowHeight_, cellWidth_ - 1, rowHeight_ - 1));
}

QString TerminalView::visibleText() const {
  const auto& text = pane_.content();
  QString shown;
  const auto first = static_cast<std::size_t>(firstRow());
  for (std::size_t row = first; row < std::min(text.rowCount(), first + static_cast<std::size_t>(visibleRows())); ++row)
    shown += QString::fromUtf8(text.row(row).shown().data(), static_cast<qsizetype>(text.row(row).shown().size())) +
             QLatin1Char('\n');
  return shown;
}

void TerminalView::copy() const {
  if (!pane_.selection().empty()) QGuiApplication::clipboard()->setText(selectedText());
}

void TerminalView::paste() {
  loop_.post([&pane = pane_, text = QGuiApplication::clipboard()->text().toStdString()] { pane.userPaste(text); });
}

void TerminalView::selectAll() {
  pane_.select(pane_.content().begin(), pane_.content().end());
}

TerminalView* makeTerminalView(platform::EventLoop& loop, comtool::ToolPanel& panel) {
  return new TerminalView(loop, panel.texReceive, panel.che_AutoScroll);
}

}  // namespace kvr::window
