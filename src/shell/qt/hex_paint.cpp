#include "shell/qt/hex_paint.h"

#include <QFontMetrics>
#include <algorithm>
#include <array>
#include <cmath>

namespace kvr::window {
namespace {

constexpr std::array<char, 16> kDigits{'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};
constexpr char kNoDigit = '\xB7';  // a dot in the middle: nobody has put a byte here

// One row as text, a string for each colour: blank where another colour has its characters.
class RowText {
 public:
  enum Style { Faint, Plain, Changed, Selected, Styles };
  void put(Style style, int at, char c) {
    QString& text = texts_[style];
    if (text.isNull()) text = QString(HexGeometry::rowLength(), QLatin1Char(' '));
    text[at] = QLatin1Char(c);
  }
  void putByte(Style style, int at, std::uint8_t value) {
    put(style, at, kDigits[value >> 4]);
    put(style, at + 1, kDigits[value & 15]);
  }
  const QString& text(Style style) const { return texts_[style]; }

 private:
  std::array<QString, Styles> texts_;
};

RowText::Style styleOf(const images::HexCell& cell) {
  if (cell.selected) return RowText::Selected;
  if (cell.changed) return RowText::Changed;
  return cell.fromFile ? RowText::Plain : RowText::Faint;
}

RowText rowText(const images::HexLine& line) {
  RowText row;
  for (int shift = 0; shift < 6; ++shift)
    row.put(RowText::Faint, HexGeometry::kAddressAt + shift,
            kDigits[static_cast<std::size_t>(line.address >> (20 - 4 * shift) & 15)]);
  for (int column = 0; column < line.count; ++column) {
    const images::HexCell& cell = line.cells[static_cast<std::size_t>(column)];
    const RowText::Style style = styleOf(cell);
    if (cell.gap()) {
      row.put(style, HexGeometry::byteAt(column), kNoDigit);
      row.put(style, HexGeometry::byteAt(column) + 1, kNoDigit);
      continue;
    }
    row.putByte(style, HexGeometry::byteAt(column), cell.value);
    row.put(style, HexGeometry::asciiAt(column),
            cell.value >= 0x20 && cell.value < 0x7F ? static_cast<char>(cell.value) : '.');
  }
  return row;
}

QColor mixed(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](int x, int y) { return static_cast<int>(x * (1 - share) + y * share); };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

}  // namespace

HexGeometry::HexGeometry(const QFont& fixedFont) : font(fixedFont) {
  const double advance = QFontMetricsF(font).horizontalAdvance(QLatin1Char('0'));
  charWidth = std::max(1, static_cast<int>(std::lround(advance)));
  font.setKerning(false);
  font.setStyleStrategy(QFont::PreferNoShaping);
  font.setLetterSpacing(QFont::AbsoluteSpacing, charWidth - advance);
  const QFontMetrics metrics(font);
  lineHeight = std::max(1, metrics.height() + 1);
  ascent = metrics.ascent();
  headHeight = lineHeight + 4;
}

int HexGeometry::rowAt(int y) const {
  const int below = y - headHeight;
  return below >= 0 ? below / lineHeight : -1 - (-1 - below) / lineHeight;
}

int HexGeometry::columnAt(int x) const {
  if (x >= asciiX(0)) return std::min(15, (x - asciiX(0)) / charWidth);
  for (int column = 15; column > 0; --column)
    if (x >= byteX(column) - charWidth / 2) return column;
  return 0;
}

bool HexGeometry::lowDigitAt(int x) const {
  return x < asciiX(0) && x >= digitX(columnAt(x), true);
}

HexColours::HexColours(const QPalette& palette)
    : text(palette.color(QPalette::Text)),
      base(palette.color(QPalette::Base)),
      highlight(palette.color(QPalette::Highlight)),
      highlightedText(palette.color(QPalette::HighlightedText)) {
  const bool dark = base.lightness() < 128;
  faint = mixed(text, base, 0.3);
  changed = dark ? QColor(255, 150, 115) : QColor(175, 20, 20);
  differs = dark ? QColor(16, 50, 95) : QColor(205, 224, 255);
  field = dark ? QColor(62, 52, 0) : QColor(255, 240, 180);
  head = mixed(base, text, 0.06);
}

void HexPainting::draw(QPainter& painter, const QRect& area, int surfaceWidth) const {
  painter.fillRect(area, colours.base);
  const int first = std::max(0, geometry.rowAt(area.top()));
  const int last = geometry.rowAt(area.bottom());
  for (int row = first; row <= last && model.topLine() + row < model.lineCount(); ++row) drawRow(painter, row);
  if (area.top() >= geometry.headHeight) return;
  painter.fillRect(0, 0, std::max(surfaceWidth, geometry.width()), geometry.headHeight - 2, colours.head);
  painter.setPen(colours.faint);
  for (int column = 0; column < 16; ++column)
    painter.drawText(geometry.digitX(column, true), geometry.ascent + 1,
                     QString(QLatin1Char(kDigits[static_cast<std::size_t>(column)])));
}

void HexPainting::drawRow(QPainter& painter, int row) const {
  const images::HexLine line = model.line(model.topLine() + row);
  const int y = geometry.rowY(row);
  for (int column = 0; column < line.count; ++column)
    drawBehind(painter, line.cells[static_cast<std::size_t>(column)], column, y);
  const RowText text = rowText(line);
  const std::array<const QColor*, RowText::Styles> pens{&colours.faint, &colours.text, &colours.changed,
                                                        &colours.highlightedText};
  for (int style = 0; style < RowText::Styles; ++style) {
    const QString& part = text.text(static_cast<RowText::Style>(style));
    if (part.isNull()) continue;
    painter.setPen(*pens[static_cast<std::size_t>(style)]);
    painter.drawText(0, y + geometry.ascent, part);
  }
  drawCaret(painter, line, y);
}

void HexPainting::drawBehind(QPainter& painter, const images::HexCell& cell, int column, int y) const {
  const int x = geometry.byteX(column);
  if (cell.selected || cell.differs || cell.inField) {
    const QColor& back = cell.selected ? colours.highlight : cell.differs ? colours.differs : colours.field;
    painter.fillRect(x - geometry.charWidth / 2, y, 3 * geometry.charWidth, geometry.lineHeight, back);
    painter.fillRect(geometry.asciiX(column), y, geometry.charWidth, geometry.lineHeight, back);
  }
  // Colour alone would not tell everyone: a hood over what differs, one below what has changed.
  if (cell.differs) {
    painter.setPen(cell.selected ? colours.highlightedText : colours.text);
    const int end = x + 2 * geometry.charWidth - 1;
    painter.drawLine(x, y, end, y);
    for (const int side : {x - 1, end + 1}) painter.drawLine(side, y, side, y + 3);  // not one below the byte above
  }
  if (!cell.changed) return;
  painter.setPen(colours.changed);
  painter.drawLine(x, y + geometry.ascent + 2, x + 2 * geometry.charWidth - 1, y + geometry.ascent + 2);
}

void HexPainting::drawCaret(QPainter& painter, const images::HexLine& line, int y) const {
  const images::HexSpot caret = model.caret();
  const std::int32_t column = caret.address - line.address;
  if (column < 0 || column >= line.count || !enabled) return;
  const int place = static_cast<int>(column);
  const QRect box(geometry.digitX(place, caret.lowDigit), y, geometry.charWidth, geometry.lineHeight);
  if (focused) {
    painter.fillRect(box, colours.text);
    painter.setPen(colours.base);
    const images::HexCell& cell = line.cells[static_cast<std::size_t>(place)];
    const char digit = kDigits[caret.lowDigit ? cell.value & 15 : cell.value >> 4];
    painter.drawText(box.left(), y + geometry.ascent, QString(QLatin1Char(cell.gap() ? kNoDigit : digit)));
  } else {
    painter.setPen(colours.text);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
  }
  painter.setPen(colours.text);
  painter.drawRect(QRect(geometry.asciiX(place), y, geometry.charWidth, geometry.lineHeight).adjusted(0, 0, -1, -1));
}

}  // namespace kvr::window
