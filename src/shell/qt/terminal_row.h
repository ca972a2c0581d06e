// Draws one row of the receive pane in a fixed width font.
#pragma once

#include <QPainter>
#include <QPalette>
#include <string_view>

namespace kvr::window {

struct CellMetrics {
  double width;
  int height;
  int ascent;
};

// Draws at `y` from the left edge. Runs of plain characters are one drawing operation.
void drawCells(QPainter& painter, const CellMetrics& cell, int y, std::string_view row);
// Draws columns `from` to `to` (not included) anew as selected.
void drawSelected(QPainter& painter, const CellMetrics& cell, int y, std::string_view row, int from, int to,
                  const QPalette& palette);

}  // namespace kvr::window
