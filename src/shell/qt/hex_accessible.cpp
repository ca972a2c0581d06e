#include "shell/qt/hex_accessible.h"

#include "shell/qt/hex_view.h"

namespace kvr::window {
namespace {

constexpr int kFirstByteAt = 10;  // characters in front of a line's first byte

class AccessibleHexView : public AccessibleTextArea {
 public:
  explicit AccessibleHexView(HexView& view) : AccessibleTextArea(&view, QAccessible::EditableText), view_(view) {}

  QAccessible::State state() const override {
    QAccessible::State state = AccessibleTextArea::state();
    state.editable = true;
    return state;
  }
  // The value is the byte under the caret, as text.
  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Value || model().lineCount() == 0) return QAccessibleWidget::text(kind);
    const images::HexSpot caret = model().caret();
    const images::ImageBuffer& buffer = *model().buffer();
    QString text = QStringLiteral("Address %1, ").arg(QString::number(caret.address, 16).toUpper());
    if (buffer.gap(caret.address)) return text + QStringLiteral("no byte");
    text += QStringLiteral("byte %1, %2 digit")
                .arg(buffer.at(caret.address), 2, 16, QLatin1Char('0'))
                .arg(caret.lowDigit ? QStringLiteral("second") : QStringLiteral("first"));
    return buffer.changedSinceLoad(caret.address) ? text + QStringLiteral(", changed") : text;
  }

  int characterCount() const override {
    const int lines = model().lineCount();
    return lines == 0 ? 0 : (lines - 1) * kHexLineLength + static_cast<int>(model().line(lines - 1).hexText().size());
  }
  QString text(int start, int end) const override {
    QString result;
    start = std::max(0, start);
    for (int line = start / kHexLineLength; line * kHexLineLength < end && line < model().lineCount(); ++line)
      result += qtText(model().line(line).hexText()) + QLatin1Char('\n');
    return result.mid(start % kHexLineLength, std::max(0, std::min(end, characterCount()) - start));
  }
  QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start, int* end) const override {
    if (boundary != QAccessible::LineBoundary && boundary != QAccessible::ParagraphBoundary)
      return QAccessibleTextInterface::textAtOffset(offset, boundary, start, end);
    *start = std::clamp(offset, 0, characterCount()) / kHexLineLength * kHexLineLength;
    *end = std::min(*start + kHexLineLength, characterCount());
    return text(*start, *end);
  }
  int cursorPosition() const override { return textOffset(model(), model().caret()); }
  void setCursorPosition(int offset) override { move(offset, false); }

  int selectionCount() const override { return model().selection().empty() ? 0 : 1; }
  void selection(int, int* start, int* end) const override {
    const catalogue::AddressRange span = model().selection();
    *start = *end = 0;
    if (span.empty()) return;
    *start = textOffset(model(), {span.first, false});
    *end = textOffset(model(), {span.last, true}) + 1;
  }
  void addSelection(int start, int end) override {
    move(start, false);
    move(end - 1, true);
  }
  void removeSelection(int) override { move(cursorPosition(), false); }

  QRect characterRect(int offset) const override {
    const QRect cell = view_.cellRect(spotOf(offset));
    return {view_.viewport()->mapToGlobal(cell.topLeft()), cell.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    return textOffset(model(), view_.spotAt(view_.viewport()->mapFromGlobal(point)));
  }
  void scrollToSubstring(int start, int) override { move(start, false); }

 private:
  const images::HexViewModel& model() const { return view_.model(); }
  images::HexSpot spotOf(int offset) const {
    const int inLine = std::clamp(offset % kHexLineLength - kFirstByteAt, 0, 47);
    const std::int32_t address = model().firstAddress() + offset / kHexLineLength * 16 + inLine / 3;
    return {std::min(address, std::max(0, model().lastAddress())), inLine % 3 == 1};
  }
  void move(int offset, bool selecting) {
    view_.moveBy([spot = spotOf(offset), selecting](images::HexViewModel& model) {
      model.click(spot, selecting);
      model.reveal();
    });
  }
  HexView& view_;
};

}  // namespace

QAccessibleInterface* accessibleHexView(HexView& view) {
  return new AccessibleHexView(view);
}

int textOffset(const images::HexViewModel& model, images::HexSpot spot) {
  const std::int32_t line = (spot.address - model.firstAddress()) / 16;
  return static_cast<int>(line * kHexLineLength + kFirstByteAt + spot.address % 16 * 3 + (spot.lowDigit ? 1 : 0));
}

}  // namespace kvr::window
