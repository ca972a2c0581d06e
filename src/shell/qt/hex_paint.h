// How a hexadecimal view lies on its surface and how its lines are drawn. Knows the model, not the widget.
#pragma once

#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QRect>

#include "images/hex_view_model.h"

namespace kvr::window {

// Columns and rows in pixels. Row 0 lies under the head with the column numbers.
struct HexGeometry {
  explicit HexGeometry(const QFont& fixedFont);
  QFont font;  // spaced so that every character takes exactly `charWidth`: a row can be drawn in one go
  int charWidth;
  int lineHeight;
  int ascent;
  int headHeight;

  // Places in characters, and the same in pixels.
  static constexpr int kAddressAt = 1;
  static constexpr int byteAt(int column) { return 9 + 3 * column + (column >= 8 ? 1 : 0); }
  static constexpr int asciiAt(int column) { return byteAt(16) + 1 + column; }
  static constexpr int rowLength() { return asciiAt(16); }
  int byteX(int column) const { return charWidth * byteAt(column); }
  int digitX(int column, bool low) const { return byteX(column) + (low ? charWidth : 0); }
  int asciiX(int column) const { return charWidth * asciiAt(column); }
  int width() const { return asciiX(16) + charWidth; }
  int rowY(int row) const { return headHeight + row * lineHeight; }
  int rowAt(int y) const;        // below 0: above the first row
  int columnAt(int x) const;     // 0 .. 15, the nearest
  bool lowDigitAt(int x) const;  // the second digit of its byte
};

// The colours that a palette gives no role for, readable on its base.
struct HexColours {
  explicit HexColours(const QPalette& palette);
  QColor text;
  QColor faint;    // gaps, addresses
  QColor changed;  // since the load
  QColor differs;  // behind bytes that a second file has otherwise
  QColor field;    // behind the serial number
  QColor base;
  QColor head;
  QColor highlight;
  QColor highlightedText;
};

struct HexPainting {
  const HexGeometry& geometry;
  const HexColours& colours;
  const images::HexViewModel& model;
  bool focused;
  bool enabled;
  // The rows that touch `area`, and the head.
  void draw(QPainter& painter, const QRect& area, int surfaceWidth) const;

 private:
  void drawRow(QPainter& painter, int row) const;
  void drawBehind(QPainter& painter, const images::HexCell& cell, int column, int y) const;
  void drawCaret(QPainter& painter, const images::HexLine& line, int y) const;
};

}  // namespace kvr::window
