#include "shell/qt/terminal_row.h"

#include <QString>

#include "comtool/text_cells.h"

namespace kvr::window {

namespace {

// Characters that every fixed width font draws in one cell; the others are placed one by one.
bool isPlain(char32_t value) {
  return value >= 0x20 && value < 0x7F;
}

bool isAllPlain(std::string_view row) {
  for (const char c : row)
    if (!isPlain(static_cast<unsigned char>(c))) return false;
  return true;
}

}  // namespace

void drawCells(QPainter& painter, const CellMetrics& cell, int y, std::string_view row) {
  QString run;
  int runColumn = 0;
  int column = 0;
  const auto flush = [&] {
    if (!run.isEmpty()) painter.drawText(QPointF(runColumn * cell.width, y + cell.ascent), run);
    run.clear();
    runColumn = column;
  };
  if (isAllPlain(row)) {
    run = QString::fromLatin1(row.data(), static_cast<qsizetype>(row.size()));
    return flush();
  }
  while (!row.empty()) {
    const auto next = comtool::firstChar(row);
    const int columns = comtool::columnsOf(next.value, column);
    const char32_t shown = comtool::shownAs(next.value);
    const bool joins = columns == 0 || isPlain(next.value);
    if (!joins) flush();
    if (next.value != '\t') run += QString::fromUcs4(&shown, 1);
    column += columns;
    if (!joins) flush();
    row.remove_prefix(next.bytes);
  }
  flush();
}

void drawSelected(QPainter& painter, const CellMetrics& cell, int y, std::string_view row, int from, int to,
                  const QPalette& palette) {
  const QRectF area(from * cell.width, y, (to - from) * cell.width, cell.height);
  painter.save();
  painter.setClipRect(area);
  painter.fillRect(area, palette.highlight());
  painter.setPen(palette.highlightedText().color());
  drawCells(painter, cell, y, row);
  painter.restore();
}

}  // namespace kvr::window
